#include "desktop/help/Help.h"

#include <string>
#include <string_view>

#include "platform/PathText.h"

namespace tallyhorn {
namespace {

constexpr unsigned WinHelpContext = 1;
constexpr unsigned WinHelpFinder = 11;  ///< makes WinHelp show the contents
constexpr unsigned HtmlHelpContext = 15;

constexpr std::string_view NoFileText =
    "The help file THListen.CHM could not be found, neither in the console's folder nor in the folder of the "
    "program.  You may need to install the program again to get it back.";
constexpr std::string_view BadFileText =
    "The help file THListen.CHM could not be read, since it is damaged.  You may need to install the program "
    "again to replace it.";
constexpr std::string_view NoViewerText =
    "The help file could not be opened, since this system has no viewer for files of its kind.";

std::string_view Explanation(HelpOutcome outcome) {
    switch (outcome) {
        case HelpOutcome::NoFile:
            return NoFileText;
        case HelpOutcome::BadFile:
            return BadFileText;
        default:
            return NoViewerText;
    }
}

}  // namespace

void Help::ShowHelp(HelpContext context, std::uintptr_t owner) {
    if (explaining_)
        return;
    const std::filesystem::path file = findHelpFile_ ? findHelpFile_() : std::filesystem::path();
    HelpViewer::Request request{file, HtmlHelpContext, HelpNumber(context), owner};
    HelpOutcome outcome = HelpOutcome::Shown;
    if (Utf8FromPath(file.filename()).ends_with("HLP")) {
        request.Command = context == HelpContext::Contents ? WinHelpFinder : WinHelpContext;
        outcome = viewer_.OpenWinHelp(request);
    } else {
        outcome = viewer_.OpenHtmlHelp(request);
    }
    if (outcome == HelpOutcome::Shown)
        return;
    explaining_ = true;
    boxes_.Warn(Explanation(outcome));
    explaining_ = false;
}

}  // namespace tallyhorn
