#include <gtest/gtest.h>

#include <tuple>

#include "desktop/help/Help.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

class HelpTest : public ::testing::Test {
protected:
    FakeHelpViewer viewer_;
    FakeMessageBoxes boxes_;
    Help help_{viewer_, boxes_};
};

TEST_F(HelpTest, TheEndOfTheFileNameSelectsTheViewerAndItsCommand) {
    const std::tuple<const char*, HelpContext, const char*, unsigned> cases[] = {
        {"a/THListen.CHM", HelpContext::Contents, "HtmlHelp", 15},
        {"a/THListen.HLP", HelpContext::MainWindow, "WinHelp", 1},
        {"a/THListen.HLP", HelpContext::Contents, "WinHelp", 11},
        {"a/THListen.hlp", HelpContext::MainWindow, "HtmlHelp", 15},
        {"HLP", HelpContext::Troubles, "WinHelp", 1},
        {"a/HLP.txt", HelpContext::Troubles, "HtmlHelp", 15}};
    for (const auto& [file, context, kind, command] : cases) {
        SCOPED_TRACE(file);
        help_.SetHelpFile([file = file] { return std::filesystem::path(file); });
        help_.ShowHelp(context, 4711);
        const auto& [usedKind, request] = viewer_.Requests.back();
        EXPECT_EQ(usedKind, kind);
        EXPECT_EQ(request.Command, command);
        EXPECT_EQ(request.File, file);
        EXPECT_EQ(request.Context, HelpNumber(context));
        EXPECT_EQ(request.Owner, 4711U);
    }
    EXPECT_EQ(viewer_.Requests.size(), std::size(cases));
    EXPECT_TRUE(boxes_.Shown.empty());
}

TEST_F(HelpTest, EachFailureIsExplainedInOneMessageBox) {
    const std::pair<HelpOutcome, const char*> cases[] = {{HelpOutcome::NoFile, "could not be found"},
                                                         {HelpOutcome::BadFile, "is damaged"},
                                                         {HelpOutcome::NoViewer, "has no viewer"}};
    boxes_.WhileAsked = [this] { help_.ShowHelp(HelpContext::Troubles, 0); };
    for (const auto& [outcome, words] : cases) {
        viewer_.Outcome = outcome;
        boxes_.Shown.clear();
        help_.ShowHelp(HelpContext::Contents, 0);
        ASSERT_EQ(boxes_.Shown.size(), 1U) << words;
        EXPECT_NE(boxes_.Shown[0].find(words), std::string::npos) << boxes_.Shown[0];
    }
    EXPECT_EQ(viewer_.Requests.size(), std::size(cases)) << "no request while the box is open";
}

TEST(SystemHelpViewer, ReportsAMissingFile) {
    const std::unique_ptr<HelpViewer> viewer = MakeSystemHelpViewer();
    if (viewer == nullptr)
        GTEST_SKIP() << "this system has none";
    const TemporaryFolder folder;
    EXPECT_EQ(viewer->OpenHtmlHelp({folder / "none.CHM", 15, 10, 0}), HelpOutcome::NoFile);
    EXPECT_EQ(viewer->OpenWinHelp({folder / "none.HLP", 1, 10, 0}), HelpOutcome::NoFile);
}

}  // namespace
}  // namespace tallyhorn
