#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace tallyhorn {

// What a program needs of its system where it is started by a command line.  Called from the main thread.

/// The arguments of `main` without the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

/// Sees to it that what goes to `stream`, stdout or stderr, is seen; false where nobody would see it.  A
/// windowed program on Windows has neither of its own and takes the console of the program that started it,
/// if any.
bool AttachOutput(std::FILE* stream);

/// Keeps the system from translating line ends on standard input.
void ReadStandardInputAsBytes();

/// From now on an interrupt or a request to terminate does not end the process but is told by EndRequested. A
/// write to a mailslot that waits for room when one comes fails.
void CatchEndRequests();
bool EndRequested();

}  // namespace tallyhorn
