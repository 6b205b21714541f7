#pragma once

#include <functional>
#include <memory>

namespace tallyhorn {

/// Turns the system's requests to end the program (SIGTERM, SIGINT, SIGHUP on Linux) into one call each. Made
/// in main before any thread starts, since threads inherit that the signals are held back for it.
class TerminationSignals {
public:
    virtual ~TerminationSignals() = default;
    /// `ended` is called from a thread of this object's own, until Stop.
    virtual void Start(std::function<void()> ended) = 0;
    virtual void Stop() = 0;
};

std::unique_ptr<TerminationSignals> MakeTerminationSignals();

}  // namespace tallyhorn
