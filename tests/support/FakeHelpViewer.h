#pragma once

#include <string>
#include <vector>

#include "platform/HelpViewer.h"

namespace tallyhorn {

/// Records the requests and shows nothing.
class FakeHelpViewer final : public HelpViewer {
public:
    struct Asked {
        std::string Kind;
        Request What;
    };

    HelpOutcome OpenWinHelp(const Request& request) override { return Keep("WinHelp", request); }
    HelpOutcome OpenHtmlHelp(const Request& request) override { return Keep("HtmlHelp", request); }
    void Close() override { Requests.push_back({.Kind = "close", .What = {}}); }

    HelpOutcome Outcome = HelpOutcome::Shown;
    std::vector<Asked> Requests;

private:
    HelpOutcome Keep(const char* kind, const Request& request) {
        Requests.push_back({kind, request});
        return Outcome;
    }
};

}  // namespace tallyhorn
