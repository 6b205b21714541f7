#pragma once

#include <utility>
#include <vector>

#include "platform/HelpViewer.h"
#include "platform/NotificationArea.h"
#include "platform/ProgramLauncher.h"
#include "platform/SaveDialog.h"
#include "platform/SoundDevice.h"
#include "platform/UserNames.h"

// The ports to the desktop, without a desktop: the fakes record their calls and return what a test sets.

namespace tallyhorn {

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

/// A notification area that a test makes available or not; records the calls.
class FakeNotificationArea final : public NotificationArea {
public:
    void Listen(Events events) override { At = std::move(events); }
    bool IsAvailable() override { return Available; }
    void Add(int image, std::string_view tip) override { Note("add ", image, tip); }
    void Modify(int image, std::string_view tip) override { Note("modify ", image, tip); }
    void Delete() override { Calls.emplace_back("delete"); }
    /// Returns the calls since the previous TakeCalls, in order.
    std::string TakeCalls() {
        std::string calls;
        for (const std::string& call : std::exchange(Calls, {}))
            calls += (calls.empty() ? "" : ", ") + call;
        return calls;
    }

    bool Available = true;
    Events At;
    std::string Tip;
    std::vector<std::string> Calls;

private:
    void Note(const std::string& call, int image, std::string_view tip) {
        Tip = tip;
        Calls.push_back(call + std::to_string(image));
    }
};

/// Records each program with its arguments, and starts nothing.
class FakePrograms final : public ProgramLauncher {
public:
    bool Start(const std::string& program, std::span<const std::string> arguments) override {
        Started.emplace_back(1, program);
        Started.back().insert(Started.back().end(), arguments.begin(), arguments.end());
        return Works;
    }

    bool Works = true;
    std::vector<std::vector<std::string>> Started;
};

class FakeSaveDialog final : public SaveDialog {
public:
    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override {
        Asked.emplace_back(proposal, std::string(fileTypes));
        if (WhileOpen)
            WhileOpen();
        return Answer;
    }

    std::optional<std::filesystem::path> Answer;  ///< empty if the user cancels
    std::function<void()> WhileOpen;
    std::vector<std::pair<std::filesystem::path, std::string>> Asked;
};

/// Records the commands, each followed by a blank.  The command `Failing` fails.
class FakeSoundDevice final : public SoundDevice {
public:
    Mode CurrentMode() const override { return Now; }
    void SetFileName(const std::filesystem::path& file) override { FileName = file; }
    bool Open() override { return Command("Open ", AfterOpen); }
    bool Close() override { return Command("Close ", Mode::NotOpen); }
    bool Prev() override { return Command("Prev ", Now); }
    bool Play() override { return Command("Play ", Mode::Playing); }

    Mode Now = Mode::NotOpen;
    Mode AfterOpen = Mode::Stopped;
    std::string Failing;
    std::filesystem::path FileName;
    std::string Commands;

private:
    bool Command(const std::string& command, Mode after) {
        Commands += command;
        if (command == Failing)
            return false;
        Now = after;
        return true;
    }
};

/// Returns the names that a test sets.
class FakeUserNames final : public UserNames {
public:
    std::string UserName() const override { return User; }
    std::string ComputerName() const override { return Computer; }

    std::string User = "operator";
    std::string Computer = "console-pc";
};

}  // namespace tallyhorn
