#pragma once

#include <functional>
#include <memory>

namespace tallyhorn {

/// Calls a function for each request of the system to end the program: SIGTERM, SIGINT and SIGHUP on Linux,
/// the end of the log-on session on Windows.  Create it before any other thread starts: the constructor
/// blocks the signals, and only threads that start later inherit that.
class TerminationSignals {
public:
    virtual ~TerminationSignals() = default;
    /// Calls `ended` for each request, until Stop, from a thread of this object.
    virtual void Start(std::function<void()> ended) = 0;
    /// Waits for a running call of `ended` and prevents further ones.  Windows delays the end of the session
    /// until Stop is called, so call Stop when everything has been saved.
    virtual void Stop() = 0;
};

std::unique_ptr<TerminationSignals> MakeTerminationSignals();

}  // namespace tallyhorn
