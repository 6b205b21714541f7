#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/EventViewer.h"

namespace tallyhorn {
namespace {

class EventViewerTest : public CommandsFixture {
protected:
    /// Returns the program started and its arguments, or the text of the message box.
    std::string Open(MessagePage page, ViewNumber activeView) {
        Display.Page = page;
        Boxes.Shown.clear();
        programs_.Started.clear();
        viewer_.OpenEventViewer(activeView);
        std::string seen;
        for (const std::vector<std::string>& words : programs_.Started) {
            for (const std::string& word : words)
                seen += word + "|";
        }
        return Boxes.Shown.empty() ? seen : seen + Boxes.Shown.front();
    }

    const std::string refusal_ = "Please select a valid message before invoking the Event Viewer!";
    FakePrograms programs_;
    EventViewer viewer_{Context, programs_};
};

TEST_F(EventViewerTest, TakesTheComputerOfTheSelectedRowOrNode) {
    KeepNetBios(NetBiosText({.Computer = "NB-PC"}));
    KeepSyslog(RecordOf({.Computer = "SYS-PC"}));
    KeepSyslog(RecordOf({.Computer = "SYS-PC"}));
    EXPECT_EQ(Open(MessagePage::NetBios, 0), refusal_) << "no row selected";
    Display.Selected = {{0, 1}, {3, 0}};
    const std::string netBios = "eventvwr|NB-PC|", syslog = "eventvwr|SYS-PC|";
    const struct {
        MessagePage Page;
        ViewNumber ActiveView;
        std::string Seen;
    } cases[] = {{MessagePage::NetBios, 0, netBios},      {MessagePage::NetBios, 1, refusal_},
                 {MessagePage::NetBios, 3, refusal_},     {MessagePage::Syslog, 3, syslog},
                 {MessagePage::Syslog, 4, refusal_},      {MessagePage::Syslog, 0, refusal_},
                 {MessagePage::Syslog, 6, refusal_},      {MessagePage::Consolidated, 0, refusal_},
                 {MessagePage::Consolidated, 3, refusal_}};
    for (const auto& [page, view, seen] : cases)
        EXPECT_EQ(Open(page, view), seen) << "page " << static_cast<int>(page) << ", view " << view;
    TreeNode node;
    const std::string wholeText = "eventvwr|SYS-PC ( 2 Events )|";
    for (const std::string& seen : {refusal_, refusal_, wholeText, wholeText}) {
        node = Received.Tree.ChildAt(node, 0);
        Received.Tree.SelectNode(node);
        EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), seen);
    }
    Received.Clear(Received.Syslog);
    EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), refusal_) << "the node is removed";
}

TEST_F(EventViewerTest, ASendersTextIsOneArgumentAndNoOption) {
    const std::string shell = "PC; $(reboot) & <b> \"x\" %s";
    programs_.Works = false;  // a failed start shows no message
    for (const std::string& computer : {std::string("/l:\\\\HOST\\X.EVTX"), std::string("-x"), shell}) {
        Received.Clear(Received.Syslog);
        KeepSyslog(RecordOf({.Computer = computer}));
        Display.Selected = {{3, 0}};
        EXPECT_EQ(Open(MessagePage::Syslog, 3), computer == shell ? "eventvwr|" + shell + "|" : refusal_);
    }
}

}  // namespace
}  // namespace tallyhorn
