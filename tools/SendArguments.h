#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "reception/cvbMailslot.h"

namespace tallyhorn {

enum class SendMode { Text, File, Demo, Raw, Help, Version };

/// Where syslog datagrams go.
struct SyslogTarget {
    std::string Host;
    std::int32_t Port = 0;
    std::string Given;  ///< as the command line has it
};

/// What the command line of tallyhorn-send asks for.
struct SendArguments {
    SendMode Mode = SendMode::Text;
    std::string Mailslot{EngineMailslotName};
    std::string MailslotFolder;                ///< empty: the user's own
    std::optional<SyslogTarget> Syslog;        ///< in place of the mailslot
    std::string File;                          ///< "-" for standard input
    std::vector<std::string> Texts;            ///< one, or the datagrams; as given, not yet ANSI
    std::optional<std::uint64_t> Count, Rate;  ///< of a demo; without end, and as fast as possible
    std::uint64_t Seed = 1;
    bool Number = false;  ///< the descriptions of a demo by syslog
};

extern const char* const SendUsage;

/// `arguments` without the program's name; nothing for a wrong command line, with one line in `error` that
/// says what is wrong.
std::optional<SendArguments> ParseSendArguments(std::span<const std::string> arguments, std::string& error);

}  // namespace tallyhorn
