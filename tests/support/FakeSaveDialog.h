#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/SaveDialog.h"

namespace tallyhorn {

/// A save dialog that is answered at once; what was asked is remembered.
class FakeSaveDialog final : public SaveDialog {
public:
    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override {
        Asked.emplace_back(proposal, std::string(fileTypes));
        return Answer;
    }

    std::optional<std::filesystem::path> Answer;  ///< nothing: the user cancels
    std::vector<std::pair<std::filesystem::path, std::string>> Asked;
};

}  // namespace tallyhorn
