#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/SaveDialog.h"

namespace tallyhorn {

/// Answers at once and records what it was asked.
class FakeSaveDialog final : public SaveDialog {
public:
    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override {
        Asked.emplace_back(proposal, std::string(fileTypes));
        if (WhileOpen)
            WhileOpen();
        return Answer;
    }

    std::optional<std::filesystem::path> Answer;  ///< empty if the user cancels
    std::function<void()> WhileOpen;
    std::vector<std::pair<std::filesystem::path, std::string>> Asked;
};

}  // namespace tallyhorn
