#include <gtest/gtest.h>

#include "tests/support/FakePrograms.h"
#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/EventViewer.h"

namespace tallyhorn {
namespace {

class EventViewerTest : public CommandsFixture {
protected:
    /// A NetBIOS row of the critical list on NB-PC and two syslog ones on SYS-PC, nothing selected.
    EventViewerTest() {
        KeepNetBios(NetBiosText({.Computer = "NB-PC"}));
        KeepSyslogFrom("SYS-PC");
        KeepSyslogFrom("SYS-PC");
    }
    void KeepSyslogFrom(const std::string& computer) { KeepSyslog(RecordOf({.Computer = computer})); }
    /// The viewer's name and arguments, or what the user is told.
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
        for (const std::string& text : Boxes.Shown)
            seen += text;
        return seen;
    }

    const std::string refusal_ = "Please select a valid message before invoking the Event Viewer!";
    FakePrograms programs_;
    EventViewer viewer_{Received, Display, Boxes, programs_};
};

TEST_F(EventViewerTest, ThePageAndTheViewTouchedLastChooseTheRow) {
    const struct {
        MessagePage Page;
        ViewNumber ActiveView;
        const char* Computer;
    } cases[] = {
        {MessagePage::NetBios, 0, "NB-PC"}, {MessagePage::NetBios, 1, ""},      {MessagePage::NetBios, 3, ""},
        {MessagePage::Syslog, 3, "SYS-PC"}, {MessagePage::Syslog, 4, ""},       {MessagePage::Syslog, 0, ""},
        {MessagePage::Syslog, 6, ""},       {MessagePage::Consolidated, 3, ""},
    };
    Display.Selected = {{0, 1}, {3, 0}};
    for (const auto& [page, view, computer] : cases)
        EXPECT_EQ(Open(page, view), *computer == 0 ? refusal_ : "eventvwr|" + std::string(computer) + "|")
            << "page " << static_cast<int>(page) << ", view " << view;
    Display.Selected.clear();
    EXPECT_EQ(Open(MessagePage::NetBios, 0), refusal_) << "no row selected";
}

TEST_F(EventViewerTest, AComputersNodeGivesItsWholeText) {
    TreeNode node;
    const std::string viewer = "eventvwr|SYS-PC ( 2 Events )|";
    for (const std::string& expected : {refusal_, refusal_, viewer, viewer}) {
        node = Received.Tree.ChildAt(node, 0);
        Received.Tree.SelectNode(node);
        EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), expected);
    }
    Received.Clear(Received.Syslog);
    EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), refusal_) << "the node is gone";
}

TEST_F(EventViewerTest, ASendersTextIsOneArgumentAndNoOption) {
    const std::string shell = "PC; $(reboot) & <b> \"x\" %s";
    programs_.Works = false;  // of which the user is not told
    for (const std::string& computer : {std::string("/l:\\\\HOST\\X.EVTX"), std::string("-x"), shell}) {
        Received.Clear(Received.Syslog);
        KeepSyslogFrom(computer);
        Display.Selected = {{3, 0}};
        EXPECT_EQ(Open(MessagePage::Syslog, 3), computer == shell ? "eventvwr|" + shell + "|" : refusal_);
    }
}

}  // namespace
}  // namespace tallyhorn
