#include <gtest/gtest.h>

#include "tests/fakes/FakePrograms.h"
#include "tests/fakes/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/EventViewer.h"

namespace tallyhorn {
namespace {

constexpr const char* Refusal = "Please select a valid message before invoking the Event Viewer!";

class EventViewerTest : public CommandsFixture {
protected:
    /// A NetBIOS row of the critical list on NB-PC and two syslog ones on SYS-PC, nothing selected.
    EventViewerTest() {
        KeepNetBios(NetBiosText({.Computer = "NB-PC"}));
        KeepSyslogFrom("SYS-PC");
        KeepSyslogFrom("SYS-PC");
    }
    void KeepSyslogFrom(const std::string& computer) { KeepSyslog(RecordOf({.Computer = computer})); }
    /// The computer that the viewer is opened for; empty where the user is told to select a message.
    std::string Open(MessagePage page, ViewNumber activeView) {
        Display.Page = page;
        Received.ActiveView = activeView;
        Boxes.Shown.clear();
        programs_.Started.clear();
        viewer_.OpenEventViewer();
        if (programs_.Started.empty()) {
            EXPECT_EQ(Boxes.Shown, std::vector<std::string>{Refusal});
            return {};
        }
        EXPECT_TRUE(Boxes.Shown.empty());
        EXPECT_EQ(programs_.Started.size(), 1U);
        EXPECT_EQ(programs_.Started[0].size(), 2U) << "one argument";
        EXPECT_EQ(programs_.Started[0][0], "eventvwr");
        return programs_.Started[0].back();
    }

    FakePrograms programs_;
    EventViewer viewer_{Received, Display, Boxes, programs_};
};

TEST_F(EventViewerTest, ThePageAndTheViewTouchedLastChooseTheRow) {
    struct Case {
        MessagePage Page;
        ViewNumber ActiveView;
        const char* Computer;
    };
    constexpr Case Cases[] = {
        {MessagePage::NetBios, 0, "NB-PC"}, {MessagePage::NetBios, 1, ""},      {MessagePage::NetBios, 3, ""},
        {MessagePage::NetBios, 6, ""},      {MessagePage::Syslog, 3, "SYS-PC"}, {MessagePage::Syslog, 4, ""},
        {MessagePage::Syslog, 0, ""},       {MessagePage::Syslog, 1, ""},       {MessagePage::Syslog, 6, ""},
        {MessagePage::Consolidated, 3, ""},
    };
    Display.Selected = {{0, 1}, {3, 0}};
    for (const Case& one : Cases)
        EXPECT_EQ(Open(one.Page, one.ActiveView), one.Computer)
            << "page " << static_cast<int>(one.Page) << ", view " << one.ActiveView;
    Display.Selected.clear();
    EXPECT_EQ(Open(MessagePage::NetBios, 0), "") << "no row selected";
}

TEST_F(EventViewerTest, AComputersNodeGivesItsWholeText) {
    TreeNode node;
    const char* const expected[] = {"", "", "SYS-PC ( 2 Events )", "SYS-PC ( 2 Events )"};
    for (const char* const computer : expected) {
        node = Received.Tree.ChildAt(node, 0);
        Received.Tree.SelectNode(node);
        EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), computer);
    }
    Received.ClearSyslog();
    EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), "") << "the node is gone";
}

TEST_F(EventViewerTest, ASendersTextIsOneArgumentAndNoOption) {
    for (const char* const computer : {"/l:\\\\HOST\\SHARE\\X.EVTX", "-x"}) {
        Received.ClearSyslog();
        KeepSyslogFrom(computer);
        Display.Selected = {{3, 0}};
        EXPECT_EQ(Open(MessagePage::Syslog, 3), "") << computer;
    }
    const std::string shell = "PC; $(reboot) & <b> \"x\" %s";
    Received.ClearSyslog();
    KeepSyslogFrom(shell);
    Display.Selected = {{3, 0}};
    EXPECT_EQ(Open(MessagePage::Syslog, 3), shell);
    programs_.Works = false;
    EXPECT_EQ(Open(MessagePage::Syslog, 3), shell) << "a viewer that is missing is not told of";
}

}  // namespace
}  // namespace tallyhorn
