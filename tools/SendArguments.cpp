#include "tools/SendArguments.h"

#include <charconv>
#include <limits>
#include <string_view>

namespace tallyhorn {

const char* const SendUsage =
    R"(Usage: tallyhorn-send [OPTIONS] TEXT
       tallyhorn-send [OPTIONS] --file FILE
       tallyhorn-send [OPTIONS] --demo [--count N] [--rate PER_SECOND] [--seed N]
       tallyhorn-send [OPTIONS] --raw DATAGRAM...

Sends notifications as the event-log monitoring engine does: to the mailslot that the Tallyhorn Listener Console
reads, or as syslog datagrams to its UDP port.

  TEXT               send one notification; it is converted to Windows-1252
  --file FILE        send one notification, the unchanged bytes of FILE; "-" is standard input
  --demo             send made-up notifications of all five event types, until Ctrl+C
      --count N          stop after N notifications
      --rate PER_SECOND  send this many notifications per second (default: as fast as possible)
      --seed N           seed of the made-up texts (default 1); the same seed always gives the same texts
      --number           with --syslog: append " #000001", " #000002" and so on
  --raw DATAGRAM...  send each argument as one datagram, and never split it

  --syslog HOST:PORT     send UDP datagrams to this port instead of a mailslot; IPv6: [::1]:514
  --mailslot NAME        send to this mailslot (default TallyhornEngine)
  --mailslot-folder DIR  look for the mailslot in this folder (Linux)
  --help, --version      print this help or the version
  --                     treat all further arguments as texts

A text of up to 399 bytes is written to the mailslot with a NUL byte at its end, a text of 400 bytes without it, and a
longer text in several numbered parts.  The console loses a text if it reads all parts of the text at once.  About one
notification in 250 of a demo is sent in parts, and many of these never appear.  By syslog, each text is sent unchanged
as one datagram.

Exit status: 0 if everything was sent, 1 if no program receives at the destination or sending failed, 2 if the arguments
are wrong.  With --syslog, tallyhorn-send can detect reliably only on the local machine that no program receives, and it
never detects lost datagrams.
)";

namespace {

/// Reads a number from `least` to `most` that consists of digits only.
std::optional<std::uint64_t> ParseNumber(std::string_view text, std::uint64_t least, std::uint64_t most) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < least || number > most)
        return std::nullopt;
    return number;
}

/// Reads "HOST:PORT".  A host with colons, an IPv6 address, must be in brackets.
std::optional<SyslogTarget> ParseTarget(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return std::nullopt;
    std::string host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    else if (host.find_first_of(":[]") != std::string::npos)
        return std::nullopt;
    constexpr std::uint64_t LastPort = 65535;
    const std::optional<std::uint64_t> port = ParseNumber(text.substr(colon + 1), 1, LastPort);
    if (host.empty() || !port)
        return std::nullopt;
    return SyslogTarget{std::move(host), static_cast<std::int32_t>(*port), text};
}

/// Parses a command line.  Error returns the first mistake in it, or an empty text.
class Parser {
public:
    explicit Parser(std::span<const std::string> arguments) : rest_(arguments) {}

    std::optional<SendArguments> Parse() {
        while (error_.empty() && !rest_.empty())
            TakeArgument(Next());
        CheckWhole();
        return error_.empty() ? std::optional(result_) : std::nullopt;
    }
    const std::string& Error() const { return error_; }

private:
    const std::string& Next() {
        const std::string& front = rest_.front();
        rest_ = rest_.subspan(1);
        return front;
    }

    void TakeArgument(const std::string& argument) {
        if (optionsEnded_ || !argument.starts_with("--"))
            result_.Texts.push_back(argument);
        else if (argument == "--")
            optionsEnded_ = true;
        else if (argument == "--number")
            result_.Number = true;
        else if (!TakeMode(argument) && !TakeValueOption(argument))
            Fail("unknown option " + argument);
    }

    bool TakeMode(std::string_view option) {
        if (option == "--demo")
            SetMode(SendMode::Demo);
        else if (option == "--raw")
            SetMode(SendMode::Raw);
        else if (option == "--help")
            SetMode(SendMode::Help);
        else if (option == "--version")
            SetMode(SendMode::Version);
        else
            return false;
        return true;
    }

    bool TakeValueOption(const std::string& option) {
        constexpr std::uint64_t MostTexts = 1'000'000'000'000;
        constexpr std::uint64_t FastestRate = 100'000'000;
        if (option == "--mailslot")
            result_.Mailslot = TakeValue(option);
        else if (option == "--mailslot-folder")
            result_.MailslotFolder = TakeValue(option);
        else if (option == "--syslog")
            SetTarget(TakeValue(option));
        else if (option == "--file")
            SetFile(TakeValue(option));
        else if (option == "--count")
            result_.Count = TakeNumber(option, 1, MostTexts);
        else if (option == "--rate")
            result_.Rate = TakeNumber(option, 1, FastestRate);
        else if (option == "--seed")
            result_.Seed = TakeNumber(option, 0, std::numeric_limits<std::uint64_t>::max());
        else
            return false;
        mailslotOption_ = mailslotOption_ || option.starts_with("--mailslot");
        demoOption_ = demoOption_ || option == "--count" || option == "--rate" || option == "--seed";
        return true;
    }

    std::string TakeValue(const std::string& option) {
        if (!rest_.empty() && !rest_.front().empty())
            return Next();
        Fail(option + " needs a value");
        return {};
    }

    std::uint64_t TakeNumber(const std::string& option, std::uint64_t least, std::uint64_t most) {
        const std::string value = TakeValue(option);
        const std::optional<std::uint64_t> number = ParseNumber(value, least, most);
        if (!number)
            Fail(option + " needs a whole number from " + std::to_string(least) + " to " +
                 std::to_string(most) + ", not \"" + value + '"');
        return number.value_or(least);
    }

    void SetTarget(const std::string& target) {
        result_.Syslog = ParseTarget(target);
        if (!result_.Syslog)
            Fail("--syslog needs HOST:PORT or [ADDRESS]:PORT with a port from 1 to 65535, not \"" + target +
                 '"');
    }

    void SetFile(std::string file) {
        SetMode(SendMode::File);
        result_.File = std::move(file);
    }

    void SetMode(SendMode mode) {
        if (modeSet_ && result_.Mode != mode)
            Fail("only one of --file, --demo, --raw, --help and --version is allowed");
        modeSet_ = true;
        result_.Mode = mode;
    }

    void CheckWhole() {
        const SendMode mode = result_.Mode;
        if (mode == SendMode::Text && result_.Texts.size() != 1)
            Fail(result_.Texts.empty() ? "nothing to send: no text is given"
                                       : "more than one text is given; put a text with blanks in quotes");
        if (mode == SendMode::Raw && result_.Texts.empty())
            Fail("--raw needs at least one datagram");
        if ((mode == SendMode::File || mode == SendMode::Demo) && !result_.Texts.empty())
            Fail("--file and --demo cannot be combined with a text");
        if (mode != SendMode::Demo && demoOption_)
            Fail("--count, --rate and --seed need --demo");
        if (result_.Number && (mode != SendMode::Demo || !result_.Syslog))
            Fail("--number needs --demo and --syslog");
        if (result_.Syslog && mailslotOption_)
            Fail("--syslog cannot be combined with --mailslot or --mailslot-folder");
    }

    void Fail(std::string message) {
        if (error_.empty())
            error_ = std::move(message);
    }

    std::span<const std::string> rest_;
    SendArguments result_;
    std::string error_;
    bool optionsEnded_ = false;
    bool modeSet_ = false;
    bool demoOption_ = false;
    bool mailslotOption_ = false;
};

}  // namespace

std::optional<SendArguments> ParseSendArguments(std::span<const std::string> arguments, std::string& error) {
    Parser parser(arguments);
    std::optional<SendArguments> result = parser.Parse();
    error = parser.Error();
    return result;
}

}  // namespace tallyhorn
