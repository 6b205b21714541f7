#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace tallyhorn {

// The functions of the operating system that command-line programs need.  Call them only from the main
// thread.

/// Returns the arguments of `main` in UTF-8, without the program's name.
std::vector<std::string> ProgramArguments(int argc, char** argv);

/// Makes output to `stream` (stdout or stderr) visible.  On Windows, a graphical program starts without these
/// streams; this function connects `stream` to the console window of the parent process, and returns false if
/// that has none.
bool AttachOutput(std::FILE* stream);

/// Switches standard input to binary mode, so that line ends are read unchanged.
void ReadStandardInputAsBytes();

/// Installs handlers for SIGINT and SIGTERM: from now on these signals do not end the process but make
/// EndRequested return true.  On Linux, a signal also makes a blocked MailslotClient::Write return false.
void CatchEndRequests();
bool EndRequested();

}  // namespace tallyhorn
