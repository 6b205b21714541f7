#pragma once

#include <memory>
#include <span>
#include <string>

namespace tallyhorn {

/// The port for starting other programs.  Does not wait until they end.  For one thread at a time.
class ProgramLauncher {
public:
    virtual ~ProgramLauncher() = default;
    /// Starts `program`, a file name, in its own window.  Searches for it in the absolute folders of the PATH
    /// variable, never in the current folder.  The program receives each of `arguments` (Windows-1252), up to
    /// its first NUL, unchanged, since no shell interprets them.  Returns false if the program cannot be
    /// started.
    virtual bool Start(const std::string& program, std::span<const std::string> arguments) = 0;
};

/// Returns the back end for this operating system.  If `folders` is not empty, it replaces the value of the
/// PATH variable.
std::unique_ptr<ProgramLauncher> MakeProgramLauncher(const std::string& folders = {});

}  // namespace tallyhorn
