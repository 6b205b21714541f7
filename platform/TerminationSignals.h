#pragma once

#include <functional>
#include <memory>

namespace tallyhorn {

/// Turns the system's requests to end the program (SIGTERM, SIGINT, SIGHUP on Linux; on Windows the end of
/// the log-on session) into one call each.  Made in main before any thread starts, since threads inherit that
/// the signals are held back for it.
class TerminationSignals {
public:
    virtual ~TerminationSignals() = default;
    /// `ended` is called from a thread of this object's own, until Stop.
    virtual void Start(std::function<void()> ended) = 0;
    /// Windows waits for it before it ends the program: to be called once all is saved.
    virtual void Stop() = 0;
};

std::unique_ptr<TerminationSignals> MakeTerminationSignals();

}  // namespace tallyhorn
