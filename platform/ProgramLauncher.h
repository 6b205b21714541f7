#pragma once

#include <memory>
#include <span>
#include <string>

namespace tallyhorn {

/// Starts other programs and does not wait for them.  Called from one thread at a time.
class ProgramLauncher {
public:
    virtual ~ProgramLauncher() = default;
    /// Looks for `program`, a plain name, in the folders of the path alone, never in the one that happens to
    /// be current, and starts it with a window of its own.  Each of `arguments` (ANSI bytes) arrives as one,
    /// whatever stands in it, up to its first NUL; no shell is asked.  False where that fails.
    virtual bool Start(const std::string& program, std::span<const std::string> arguments) = 0;
};

/// The system's own programs.  `folders`, separated as the system does it, stands in for the path of the
/// environment.
std::unique_ptr<ProgramLauncher> MakeProgramLauncher(const std::string& folders = {});

}  // namespace tallyhorn
