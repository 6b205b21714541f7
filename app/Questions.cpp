#include "app/Questions.h"

namespace tallyhorn {

void Questions::Inform(std::string_view text) {
    boxes_.Inform(text);
    answered_();
}

void Questions::Warn(std::string_view text) {
    boxes_.Warn(text);
    answered_();
}

bool Questions::Confirm(std::string_view text) {
    const bool yes = boxes_.Confirm(text);
    answered_();
    return yes;
}

bool Questions::ConfirmErasing(std::string_view text) {
    const bool yes = boxes_.ConfirmErasing(text);
    answered_();
    return yes;
}

bool Questions::Retry(std::string_view text) {
    const bool retry = boxes_.Retry(text);
    answered_();
    return retry;
}

std::optional<std::filesystem::path> Questions::AskFile(const std::filesystem::path& proposal,
                                                        std::string_view fileTypes) {
    std::optional<std::filesystem::path> file = files_.AskFile(proposal, fileTypes);
    answered_();
    return file;
}

}  // namespace tallyhorn
