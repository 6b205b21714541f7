// Sends notifications to a console's mailslot, as the engine does.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/CommandLineProgram.h"
#include "platform/MailslotTransport.h"
#include "reception/cvbMailslot.h"
#include "records/AnsiText.h"
#include "tools/CountingTransport.h"
#include "tools/DemoFeed.h"
#include "tools/SendArguments.h"

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

/// Says when the next texts of a feed are due, by a schedule that late ones do not shift.
class Pace {
public:
    explicit Pace(std::optional<std::uint64_t> rate)
        : rate_(static_cast<double>(rate.value_or(0))), start_(std::chrono::steady_clock::now()) {}

    /// Waits until text number `index`, from 0, is due; false when asked to end meanwhile.
    bool WaitFor(std::uint64_t index) {
        if (rate_ > 0 && index >= due_)
            Sleep(index);
        return !EndRequested();
    }

private:
    /// At high rates each sleep is followed by all the texts that came due in it.
    void Sleep(std::uint64_t index) {
        using namespace std::chrono_literals;
        const std::chrono::duration<double> offset(static_cast<double>(index) / rate_);
        const auto deadline = start_ + std::chrono::duration_cast<std::chrono::nanoseconds>(offset);
        auto now = std::chrono::steady_clock::now();
        while (now < deadline && !EndRequested()) {
            std::this_thread::sleep_for(std::clamp<std::chrono::nanoseconds>(deadline - now, 1ms, 50ms));
            now = std::chrono::steady_clock::now();
        }
        const std::chrono::duration<double> elapsed = now - start_;
        due_ = static_cast<std::uint64_t>(elapsed.count() * rate_) + 1;
    }

    const double rate_;
    const std::chrono::steady_clock::time_point start_;
    std::uint64_t due_ = 0;
};

/// One run: what is asked for, and what went through the mailslot.
class Sender {
public:
    Sender(const SendArguments& arguments, CountingTransport& counting, cvbMailslot& mailslot)
        : arguments_(arguments), counting_(counting), mailslot_(mailslot) {}

    int Run() {
        std::vector<std::string> texts;
        if (!Prepare(texts))
            return Fail(WrongArguments, "cannot read " + arguments_.File);
        if (arguments_.Mode == SendMode::Raw)
            return RunRaw(texts);
        if (!mailslot_.InitializeMailslot(arguments_.Mailslot, false))
            return Refused();
        const bool done = arguments_.Mode == SendMode::Demo ? SendDemo() : Send(texts.front());
        Report();
        return done ? Sent : Gone();
    }

private:
    /// What there is to send, read before anybody is bothered.
    bool Prepare(std::vector<std::string>& texts) {
        if (arguments_.Mode == SendMode::File) {
            const std::optional<std::string> bytes = ReadFileBytes(arguments_.File);
            texts.push_back(bytes.value_or(""));
            return bytes.has_value();
        }
        std::transform(arguments_.Texts.begin(), arguments_.Texts.end(), std::back_inserter(texts), ToAnsi);
        return true;
    }

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
        std::cout << "sent " << texts_ << (texts_ == 1 ? " text, " : " texts, ") << counting_.Datagrams()
                  << (counting_.Datagrams() == 1 ? " datagram, " : " datagrams, ") << counting_.Bytes()
                  << " bytes to " << arguments_.Mailslot << '\n';
        if (arguments_.Mode != SendMode::Demo)
            return;
        for (std::size_t type = 0; type < DemoTypeNames.size(); ++type)
            std::cout << "  " << DemoTypeNames[type] << ": " << textsByType_[type] << '\n';
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
    std::array<std::uint64_t, DemoTypeNames.size()> textsByType_{};
};

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
    const std::unique_ptr<MailslotTransport> system = MakeMailslotTransport(arguments->MailslotFolder);
    CountingTransport counting(*system);
    const SystemClock clock;
    cvbMailslot mailslot(counting, clock);
    return Sender(*arguments, counting, mailslot).Run();
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
