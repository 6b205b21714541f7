#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Records the texts of message boxes and answers at once.
class FakeMessageBoxes final : public MessageBoxes {
public:
    void Inform(std::string_view text) override { Shown.emplace_back(text); }
    void Warn(std::string_view text) override { Confirm(text); }
    bool Confirm(std::string_view text) override {
        Shown.emplace_back(text);
        if (WhileAsked)
            WhileAsked();
        return Answer;
    }
    bool ConfirmErasing(std::string_view text) override { return Confirm(text); }
    bool Retry(std::string_view text) override {
        Confirm(text);
        return RetriesLeft-- > 0;
    }

    bool Answer = true;
    int RetriesLeft = 0;
    std::function<void()> WhileAsked;
    std::vector<std::string> Shown;
};

}  // namespace tallyhorn
