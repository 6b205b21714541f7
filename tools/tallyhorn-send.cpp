// Sends notifications to a console's mailslot or syslog port, as the engine does.

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/CommandLineProgram.h"
#include "platform/DatagramSockets.h"
#include "platform/MailslotTransport.h"
#include "reception/cvbMailslot.h"
#include "records/AnsiText.h"
#include "tools/CountingTransport.h"
#include "tools/DemoFeed.h"
#include "tools/Pace.h"
#include "tools/SendArguments.h"
#include "tools/SyslogRun.h"

namespace tallyhorn {
namespace {

enum ExitStatus { Sent = 0, NobodyListens = 1, WrongArguments = 2 };

int Fail(ExitStatus status, const std::string& message) {
    std::cerr << "tallyhorn-send: " << message << '\n';
    return status;
}

std::string ToAnsi(const std::string& argument) {
    return ArgumentsAreUtf8() ? AnsiFromUtf8(argument) : argument;
}

std::optional<std::string> ReadAll(std::istream& stream) {
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad())
        return std::nullopt;
    return bytes;
}

std::optional<std::string> ReadFileBytes(const std::string& path) {
    if (path == "-") {
        ReadStandardInputAsBytes();
        return ReadAll(std::cin);
    }
    std::ifstream file(path, std::ios::binary);
    // A folder opens, but has no first byte to look at and does not say that it ends.
    if (!file || (file.peek() == std::ifstream::traits_type::eof() && file.bad()))
        return std::nullopt;
    return ReadAll(file);
}

using Counts = std::array<std::uint64_t, DemoTypeNames.size()>;

std::string Counted(std::uint64_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

/// The texts that the command line gives, of which a demo has none; nothing where the file cannot be read.
std::optional<std::vector<std::string>> TextsToSend(const SendArguments& arguments) {
    std::vector<std::string> texts;
    if (arguments.Mode == SendMode::File) {
        std::optional<std::string> bytes = ReadFileBytes(arguments.File);
        if (!bytes)
            return std::nullopt;
        texts.push_back(std::move(*bytes));
    }
    std::transform(arguments.Texts.begin(), arguments.Texts.end(), std::back_inserter(texts), ToAnsi);
    return texts;
}

void ReportTypes(const Counts& counts) {
    for (std::size_t type = 0; type < DemoTypeNames.size(); ++type)
        std::cout << "  " << DemoTypeNames[type] << ": " << counts[type] << '\n';
}

/// One run: what is asked for, and what went through the mailslot.
class Sender {
public:
    Sender(const SendArguments& arguments, CountingTransport& counting, cvbMailslot& mailslot)
        : arguments_(arguments), counting_(counting), mailslot_(mailslot) {}

    int Run(const std::vector<std::string>& texts) {
        if (arguments_.Mode == SendMode::Raw)
            return RunRaw(texts);
        if (!mailslot_.InitializeMailslot(arguments_.Mailslot, false))
            return Refused();
        const bool done = arguments_.Mode == SendMode::Demo ? SendDemo() : Send(texts.front());
        Report();
        return done ? Sent : Gone();
    }

private:
    int RunRaw(const std::vector<std::string>& datagrams) {
        const std::unique_ptr<MailslotClient> client =
            counting_.Open(std::string(MailslotPrefix) + arguments_.Mailslot);
        if (client == nullptr)
            return Refused();
        for (const std::string& datagram : datagrams) {
            if (!client->Write(std::string_view(datagram.c_str(), datagram.size() + 1)))
                break;
        }
        texts_ = counting_.Datagrams();
        Report();
        return texts_ == datagrams.size() ? Sent : Gone();
    }

    bool Send(std::string text) {
        constexpr std::size_t LongestWithNul = cvbMailslot::MaximumMessageSize - 2;
        if (text.size() <= LongestWithNul)
            text += '\0';
        try {
            if (!mailslot_.SendMessage(text))
                return false;
        } catch (const MailslotWriteError&) {
            return false;
        }
        ++texts_;
        return true;
    }

    bool SendDemo() {
        CatchEndRequests();
        DemoFeed feed(arguments_.Seed);
        Pace pace(arguments_.Rate);
        while ((!arguments_.Count || texts_ < *arguments_.Count) && pace.WaitFor(texts_)) {
            DemoText next = feed.Next();
            if (!Send(std::move(next.Text)))
                return EndRequested();
            ++textsByType_[static_cast<std::size_t>(next.Type)];
        }
        return true;
    }

    void Report() const {
        std::cout << "sent " << Counted(texts_, "text") << ", " << Counted(counting_.Datagrams(), "datagram")
                  << ", " << counting_.Bytes() << " bytes to " << arguments_.Mailslot << '\n';
        if (arguments_.Mode == SendMode::Demo)
            ReportTypes(textsByType_);
    }

    int Refused() const {
        return Fail(NobodyListens, "nobody listens at the mailslot " + arguments_.Mailslot);
    }
    int Gone() const {
        return Fail(NobodyListens, "the mailslot " + arguments_.Mailslot +
                                       " did not take a datagram: it is too long or the listener is gone");
    }

    const SendArguments& arguments_;
    CountingTransport& counting_;
    cvbMailslot& mailslot_;
    std::uint64_t texts_ = 0;
    Counts textsByType_{};
};

int SendToMailslot(const SendArguments& arguments, const std::vector<std::string>& texts) {
    const std::unique_ptr<MailslotTransport> system = MakeMailslotTransport(arguments.MailslotFolder);
    CountingTransport counting(*system);
    const SystemClock clock;
    cvbMailslot mailslot(counting, clock);
    return Sender(arguments, counting, mailslot).Run(texts);
}

int SendBySyslog(const SendArguments& arguments, const std::vector<std::string>& texts) {
    const SyslogTarget& target = *arguments.Syslog;
    const std::unique_ptr<DatagramSender> sender = MakeDatagramSockets()->Open(target.Host, target.Port);
    if (sender == nullptr)
        return Fail(NobodyListens, "there is no way to " + target.Given);
    const bool demo = arguments.Mode == SendMode::Demo;
    if (demo)
        CatchEndRequests();
    SyslogRun run(arguments, *sender);
    const SyslogRun::Outcome outcome = demo ? run.SendDemo() : run.Send(texts);
    std::cout << "sent " << Counted(run.Datagrams(), "datagram") << ", " << run.Bytes() << " bytes to "
              << target.Given << '\n';
    if (demo)
        ReportTypes(run.ByType());
    if (outcome == SyslogRun::Outcome::Refused)
        return Fail(NobodyListens, "nobody listens at " + target.Given);
    if (outcome == SyslogRun::Outcome::NotTaken)
        return Fail(NobodyListens, "the system did not take a datagram for " + target.Given +
                                       ": it is too long or there is no way");
    return Sent;
}

int Run(const std::vector<std::string>& words) {
    std::string error;
    const std::optional<SendArguments> arguments = ParseSendArguments(words, error);
    if (!arguments)
        return Fail(WrongArguments, error + " (--help tells how it is used)");
    if (arguments->Mode == SendMode::Help) {
        std::cout << SendUsage;
        return Sent;
    }
    if (arguments->Mode == SendMode::Version) {
        std::cout << "tallyhorn-send " TALLYHORN_VERSION "\n";
        return Sent;
    }
    const std::optional<std::vector<std::string>> texts = TextsToSend(*arguments);
    if (!texts)
        return Fail(WrongArguments, "cannot read " + arguments->File);
    return arguments->Syslog ? SendBySyslog(*arguments, *texts) : SendToMailslot(*arguments, *texts);
}

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    try {
        return tallyhorn::Run(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tallyhorn-send: %s\n", error.what());
        return tallyhorn::NobodyListens;
    }
}
