#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "reception/cvbMailslot.h"

namespace tallyhorn {

enum class SendMode { Text, File, Demo, Raw, Help, Version };

/// The destination of syslog datagrams.
struct SyslogTarget {
    std::string Host;
    std::int32_t Port = 0;
    std::string Given;  ///< the target as typed on the command line, for error messages
};

/// The parsed command line of tallyhorn-send.
struct SendArguments {
    SendMode Mode = SendMode::Text;
    std::string Mailslot{EngineMailslotName};
    std::string MailslotFolder;          ///< if empty, the user's own folder is used
    std::optional<SyslogTarget> Syslog;  ///< if set, used instead of the mailslot
    std::string File;                    ///< a path, or "-" for standard input
    std::vector<std::string> Texts;      ///< the text, or the datagrams of --raw, in UTF-8
    /// The number of texts of a demo (if empty, it never ends), and texts per second (if empty, no limit).
    std::optional<std::uint64_t> Count, Rate;
    std::uint64_t Seed = 1;
    bool Number = false;  ///< append a number to each text of a syslog demo
};

extern const char* const SendUsage;

/// Parses `arguments`, which do not include the program's name.  Returns nothing if they are wrong, and the
/// reason as one line in `error`.
std::optional<SendArguments> ParseSendArguments(std::span<const std::string> arguments, std::string& error);

}  // namespace tallyhorn
