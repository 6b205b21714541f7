#include "platform/HelpViewer.h"

#include <windows.h>

#include <system_error>

#include "platform/DataFolder.h"

namespace tallyhorn {
namespace {

using HtmlHelpFunction = HWND(WINAPI*)(HWND owner, const char* file, UINT command, DWORD_PTR data);

constexpr UINT CloseAllCommand = 18;

HWND OwnerOf(const HelpViewer::Request& request) {
    return reinterpret_cast<HWND>(request.Owner);
}

bool IsThere(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

/// Loads the viewer of HTML help at run time, since not every Windows has it installed.  Returns null if it
/// is not installed.  Never unloads its library, since the viewer's window may be open.
HtmlHelpFunction FindHtmlHelp() {
    const HMODULE library = LoadLibraryExA("hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr)
        return nullptr;
    return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpA")));
}

class WindowsHelpViewer final : public HelpViewer {
public:
    HelpOutcome OpenWinHelp(const Request& request) override {
        if (!IsThere(request.File))
            return HelpOutcome::NoFile;
        const BOOL shown =
            WinHelpA(OwnerOf(request), NarrowPath(request.File).c_str(), request.Command, request.Context);
        return shown != 0 ? HelpOutcome::Shown : HelpOutcome::NoViewer;
    }

    HelpOutcome OpenHtmlHelp(const Request& request) override {
        if (!IsThere(request.File))
            return HelpOutcome::NoFile;
        if (htmlHelp_ == nullptr)
            htmlHelp_ = FindHtmlHelp();
        if (htmlHelp_ == nullptr)
            return HelpOutcome::NoViewer;
        const HWND shown =
            htmlHelp_(OwnerOf(request), NarrowPath(request.File).c_str(), request.Command, request.Context);
        return shown != nullptr ? HelpOutcome::Shown : HelpOutcome::BadFile;
    }

    void Close() override {
        if (htmlHelp_ != nullptr)
            htmlHelp_(nullptr, nullptr, CloseAllCommand, 0);
    }

private:
    HtmlHelpFunction htmlHelp_ = nullptr;
};

}  // namespace

std::unique_ptr<HelpViewer> MakeSystemHelpViewer() {
    return std::make_unique<WindowsHelpViewer>();
}

}  // namespace tallyhorn
