#include <tuple>

#include "tests/support/FakeDesktop.h"
#include "tests/support/Notifications.h"
#include "tests/views/CommandsFixture.h"
#include "views/EventViewer.h"

namespace tallyhorn {
namespace {

class EventViewerTest : public CommandsFixture {
protected:
    /// Returns the argument of the started program, or the text of the message box.
    std::string Open(MessagePage page, ViewNumber activeView) {
        Boxes.Shown.clear();
        programs_.Started.clear();
        viewer_.OpenEventViewer(activeView, page);
        EXPECT_NE(programs_.Started.empty(), Boxes.Shown.empty());
        return programs_.Started.empty() ? Boxes.Shown.at(0) : programs_.Started[0].at(1);
    }

    const std::string refusal_ = "Please select a valid message before invoking the Event Viewer!";
    FakePrograms programs_;
    EventViewer viewer_{Context, programs_};
};

TEST_F(EventViewerTest, TakesTheComputerOfTheSelectedRowOrNode) {
    KeepNetBios(NetBiosText({.Computer = "NB-PC"}));
    KeepSyslog(RecordOf({.Computer = "SYS-PC"}));
    KeepSyslog(RecordOf({.Computer = "SYS-PC"}));
    programs_.Works = false;  // a failed start shows no message
    EXPECT_EQ(Open(MessagePage::NetBios, 0), refusal_) << "no row selected";
    Display.Selected = {{0, 1}, {3, 0}};
    const std::tuple<MessagePage, ViewNumber, std::string> cases[] = {
        {MessagePage::NetBios, 0, "NB-PC"},      {MessagePage::NetBios, 1, refusal_},
        {MessagePage::NetBios, 3, refusal_},     {MessagePage::Syslog, 3, "SYS-PC"},
        {MessagePage::Syslog, 4, refusal_},      {MessagePage::Syslog, 0, refusal_},
        {MessagePage::Syslog, 6, refusal_},      {MessagePage::Consolidated, 0, refusal_},
        {MessagePage::Consolidated, 3, refusal_}};
    for (const auto& [page, view, seen] : cases)
        EXPECT_EQ(Open(page, view), seen) << "page " << static_cast<int>(page) << ", view " << view;
    TreeNode node;
    const std::string wholeText = "SYS-PC ( 2 Events )";
    for (const std::string& seen : {refusal_, refusal_, wholeText, wholeText}) {
        node = Received.Tree.ChildAt(node, 0);
        Received.Tree.SelectNode(node);
        EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), seen);
    }
    Received.Clear(Received.Syslog);
    EXPECT_EQ(Open(MessagePage::Consolidated, ConsolidatedView), refusal_) << "the node is removed";
    for (const char* const name : {"-x", "/x"}) {
        KeepSyslog(RecordOf({.Computer = name}));
        EXPECT_EQ(Open(MessagePage::Syslog, 3),
                  "The name of the message's computer begins with \"-\" or "
                  "\"/\", so the Event Viewer would take it for an option.")
            << name;
        Received.Clear(Received.Syslog);
    }
}

}  // namespace
}  // namespace tallyhorn
