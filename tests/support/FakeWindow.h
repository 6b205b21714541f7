#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/MessageBoxes.h"
#include "platform/PendingEvents.h"
#include "reception/ArrivalSignals.h"
#include "views/messages/ServerDisplay.h"
#include "views/messages/ViewFilterState.h"

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

/// Calls `Event` in place of the pending events.
class FakePendingEvents final : public PendingEvents {
public:
    void Run() override {
        ++Runs;
        if (Event)
            Event();
    }

    std::function<void()> Event;
    int Runs = 0;
};

class FakeDisplay final : public ServerDisplay {
public:
    bool IsVisible() const override { return Visible; }
    MessagePage CurrentPage() const override { return Page; }
    std::optional<std::int32_t> SelectedSlot(ViewNumber list) const override {
        const auto selected = Selected.find(list);
        return selected == Selected.end() ? std::nullopt : std::optional(selected->second);
    }
    void ShowPanel(StatusPanel panel, std::string_view text) override { Panels[panel] = text; }
    void ShowPanelToolTip(StatusPanel panel, std::string_view text) override { ToolTips[panel] = text; }
    void EnableView(ViewNumber view, bool enabled) override {
        Enabled.at(static_cast<std::size_t>(view)) = enabled;
    }
    void ShowView(ViewNumber view, bool shown) override {
        ListCalls.push_back((shown ? "show " : "hide ") + std::to_string(view));
    }
    void BeginWork() override { ++WorkUnderWay; }
    void ShowProgress(std::uint64_t done, std::uint64_t total) override {
        Progress.emplace_back(done, total);
    }
    void EndWork() override { --WorkUnderWay; }
    void EnableResumeTimer(bool enabled) override { Resuming = enabled; }
    void ShowPauseCommand(bool paused) override { PauseShown = paused; }
    void ShowFilterCommand(bool inForce) override { FilterShown = inForce; }

    bool Visible = true;
    MessagePage Page = MessagePage::NetBios;
    std::map<ViewNumber, std::int32_t> Selected;  ///< the selected slot of each list
    std::map<StatusPanel, std::string> Panels, ToolTips;
    std::array<bool, ConsolidatedView + 1> Enabled{};
    std::vector<std::string> ListCalls;
    int WorkUnderWay = 0;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> Progress;  ///< pairs of done and total
    bool Resuming = false;
    bool PauseShown = false;
    std::optional<bool> FilterShown;  ///< empty until ShowFilterCommand is called
};

/// While it is active, passes only the alarms of one computer.
class FakeViewFilter final : public ViewFilterState {
public:
    bool InForce() const override { return Active; }
    bool PassesViewFilter(const AlarmRecord& alarm) const override {
        return !Active || alarm.Computer == Computer;
    }

    bool Active = false;
    std::string Computer;
};

class FakeSignals final : public ArrivalSignals {
public:
    void PlayAlertSound() override { ++Sounds; }
    void StartFlash() override { ++Flashes; }

    int Sounds = 0;
    int Flashes = 0;
};

}  // namespace tallyhorn
