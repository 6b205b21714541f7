#pragma once

namespace tallyhorn {

// What a program of the command line needs of its system.  Called from the main thread.

/// Whether the arguments of `main` are UTF-8; otherwise they are ANSI.
bool ArgumentsAreUtf8();

/// Keeps the system from translating line ends on standard input.
void ReadStandardInputAsBytes();

/// From now on an interrupt or a request to terminate does not end the process but is told by EndRequested. A
/// write to a mailslot that waits for room when one comes fails.
void CatchEndRequests();
bool EndRequested();

}  // namespace tallyhorn
