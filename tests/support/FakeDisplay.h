#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

class FakeDisplay final : public ServerDisplay {
public:
    bool IsVisible() const override { return Visible; }
    MessagePage CurrentPage() const override { return Page; }
    bool HasPage(MessagePage page) const override { return page != HiddenPage; }
    std::optional<std::int32_t> SelectedSlot(ViewNumber list) const override {
        const auto selected = Selected.find(list);
        return selected == Selected.end() ? std::nullopt : std::optional(selected->second);
    }
    void BringToFront(ViewNumber view) override { ActiveCalls.push_back("front " + std::to_string(view)); }
    void ShowActiveView(ViewNumber view, bool alone) override {
        ActiveCalls.push_back((alone ? "only " : "active ") + std::to_string(view));
    }
    void ShowPanel(StatusPanel panel, std::string_view text) override { Panels[panel] = text; }
    void ShowPanelToolTip(StatusPanel panel, std::string_view text) override { ToolTips[panel] = text; }
    void ShowNotice(Notice notice, std::string_view details) override { Notices[notice] = details; }
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
    std::optional<MessagePage> HiddenPage;
    std::map<ViewNumber, std::int32_t> Selected;  ///< the selected slot of each list
    std::map<StatusPanel, std::string> Panels, ToolTips;
    std::map<Notice, std::string> Notices;  ///< the details of each notice
    std::array<bool, ConsolidatedView + 1> Enabled{};
    std::vector<std::string> ListCalls;
    std::vector<std::string> ActiveCalls;  ///< the calls of BringToFront and ShowActiveView
    int WorkUnderWay = 0;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> Progress;  ///< pairs of done and total
    bool Resuming = false;
    bool PauseShown = false;
    std::optional<bool> FilterShown;  ///< empty until ShowFilterCommand is called
};

}  // namespace tallyhorn
