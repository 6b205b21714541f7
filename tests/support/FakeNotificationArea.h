#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/NotificationArea.h"

namespace tallyhorn {

/// An area that the test makes available or not; records the calls.
class FakeNotificationArea final : public NotificationArea {
public:
    void Listen(Events events) override { At = std::move(events); }
    bool IsAvailable() override { return Available; }
    void Add(int image, std::string_view tip) override { Note("add", image, tip); }
    void Modify(int image, std::string_view tip) override { Note("modify", image, tip); }
    void Delete() override { Calls.emplace_back("delete"); }
    /// Returns the calls since the previous TakeCalls, in order.
    std::string TakeCalls() {
        std::string calls;
        for (const std::string& call : std::exchange(Calls, {}))
            calls += (calls.empty() ? "" : ", ") + call;
        return calls;
    }

    bool Available = true;
    Events At;
    std::string Tip;
    std::vector<std::string> Calls;

private:
    void Note(const char* call, int image, std::string_view tip) {
        Tip = tip;
        Calls.push_back(call + std::string(" ") + std::to_string(image));
    }
};

}  // namespace tallyhorn
