#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace tallyhorn {

// What the command-line programs need from the operating system.  For the main thread.

/// Returns the arguments of `main` in UTF-8, without the program's name.
std::vector<std::string> ProgramArguments(int argc, char** argv);

/// Makes sure that output to `stream` (stdout or stderr) appears somewhere.  On Windows a program with a
/// graphical interface has no such streams; it attaches `stream` to the console of the process that started
/// it.  Returns false if there is no such console either.
bool AttachOutput(std::FILE* stream);

/// Switches standard input to binary mode, so that line ends are read unchanged.
void ReadStandardInputAsBytes();

/// Installs handlers for SIGINT and SIGTERM: from now on these signals do not end the process but make
/// EndRequested return true.  A MailslotClient::Write that is blocked when a signal arrives returns false
/// (Linux).
void CatchEndRequests();
bool EndRequested();

}  // namespace tallyhorn
