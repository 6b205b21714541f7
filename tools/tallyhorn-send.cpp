// Sends notifications to the console's mailslot or syslog port, as the monitoring engine does.

#include <algorithm>
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
#include "platform/PathText.h"
#include "records/AnsiText.h"
#include "tools/DemoFeed.h"
#include "tools/MailslotRun.h"
#include "tools/SendArguments.h"
#include "tools/SyslogRun.h"

namespace tallyhorn {
namespace {

enum ExitStatus { Sent = 0, NobodyListens = 1, WrongArguments = 2 };

int Fail(ExitStatus status, const std::string& message) {
    std::cerr << "tallyhorn-send: " << message << '\n';
    return status;
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
    std::ifstream file(PathFromUtf8(path), std::ios::binary);
    // On Linux a folder can be opened like a file; reading its first byte then sets badbit.
    if (!file || (file.peek() == std::ifstream::traits_type::eof() && file.bad()))
        return std::nullopt;
    return ReadAll(file);
}

std::string Counted(std::uint64_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

/// Returns the texts to send (for a demo, none), or nothing if the file cannot be read.
std::optional<std::vector<std::string>> TextsToSend(const SendArguments& arguments) {
    std::vector<std::string> texts;
    if (arguments.Mode == SendMode::File) {
        std::optional<std::string> bytes = ReadFileBytes(arguments.File);
        if (!bytes)
            return std::nullopt;
        texts.push_back(std::move(*bytes));
    }
    std::transform(arguments.Texts.begin(), arguments.Texts.end(), std::back_inserter(texts), AnsiFromUtf8);
    return texts;
}

void Report(const SendCounts& counts, const std::string& target, bool demo) {
    std::cout << "sent ";
    if (counts.Texts)
        std::cout << Counted(*counts.Texts, "text") << ", ";
    std::cout << Counted(counts.Datagrams, "datagram") << ", " << counts.Bytes << " bytes to " << target
              << '\n';
    for (std::size_t type = 0; demo && type < DemoTypeNames.size(); ++type)
        std::cout << "  " << DemoTypeNames[type] << ": " << counts.ByType[type] << '\n';
}

/// The parts of the program's output that differ between mailslot and syslog.
struct Wording {
    std::string Target;
    std::string Listener;  ///< completes "no program receives at"
    std::string NotTaken;
};

int SendAndReport(SendRun& run, const SendArguments& arguments, const std::vector<std::string>& texts,
                  const Wording& wording) {
    const bool demo = arguments.Mode == SendMode::Demo;
    if (demo)
        CatchEndRequests();
    const SendRun::Outcome outcome = demo ? run.SendDemo() : run.Send(texts);
    if (outcome != SendRun::Outcome::Refused || run.Counts().Datagrams > 0)
        Report(run.Counts(), wording.Target, demo);
    if (outcome == SendRun::Outcome::Refused)
        return Fail(NobodyListens, "no program receives at " + wording.Listener);
    return outcome == SendRun::Outcome::Sent ? Sent : Fail(NobodyListens, wording.NotTaken);
}

int SendToMailslot(const SendArguments& arguments, const std::vector<std::string>& texts) {
    const std::unique_ptr<MailslotTransport> system = MakeMailslotTransport(arguments.MailslotFolder);
    const SystemClock clock;
    MailslotRun run(arguments, *system, clock);
    const std::string listener = "the mailslot " + arguments.Mailslot;
    return SendAndReport(run, arguments, texts,
                         {arguments.Mailslot, listener,
                          listener + " did not accept a datagram: it is too long, or its reader has ended"});
}

int SendBySyslog(const SendArguments& arguments, const std::vector<std::string>& texts) {
    const SyslogTarget& target = *arguments.Syslog;
    const std::unique_ptr<DatagramSender> sender = MakeDatagramSockets()->Open(target.Host, target.Port);
    if (sender == nullptr)
        return Fail(NobodyListens, "cannot find the host or a route to it: " + target.Given);
    SyslogRun run(arguments, *sender);
    return SendAndReport(run, arguments, texts,
                         {target.Given, target.Given,
                          "the system did not accept a datagram for " + target.Given +
                              ": it is too long, or there is no route"});
}

int Run(const std::vector<std::string>& words) {
    std::string error;
    const std::optional<SendArguments> arguments = ParseSendArguments(words, error);
    if (!arguments)
        return Fail(WrongArguments, error + " (see --help)");
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
        return tallyhorn::Run(tallyhorn::ProgramArguments(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tallyhorn-send: %s\n", error.what());
        return tallyhorn::NobodyListens;
    }
}
