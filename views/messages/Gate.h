#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace tallyhorn {

/// Decides what may run when, from the table in Gate.cpp.  It owns every state that prevents something from
/// running.  A guard enters a state and leaves it at the end of its scope; guards of one state may nest.
///
/// If the console is in several states, the strictest answer counts: Run < Queue < Later < Refuse.  For
/// example:
///
///     Gate gate;
///     gate.TogglePause();                        // the user pauses
///     gate.Decide(Gate::Request::Datagrams);     // Queue: into the pause queue
///     {
///         const Gate::Hold hold(gate);           // messages are being deleted
///         gate.Decide(Gate::Request::Datagrams); // Later: they stay in the pump's queue
///         gate.AdmitPoll();                      // false, and PollIsMissed() is true from now on
///     }
///     gate.TogglePause();
///     gate.Decide(Gate::Request::Datagrams);     // Run
class Gate {
public:
    enum class Request : std::uint8_t { Poll, Datagrams, Command, End };
    enum class Answer : std::uint8_t { Run, Queue, Later, Refuse };
    enum class State : std::uint8_t {
        Starting,  ///< settings, filters and the backup are being read
        Batch,     ///< datagrams are being handled
        Hold,      ///< syslog messages are being deleted, or any are cleared, restored, filtered or exported
        PollStop,  ///< NetBIOS messages are being deleted
        Pause,
        Work,    ///< a command, a timer's routine or another piece of work that lets events run
        Dialog,  ///< a dialog that a command opened is open, perhaps for hours
        Closing  ///< the command that closes the console was given, or the console has ended
    };
    static constexpr std::size_t RequestCount = 4;
    static constexpr std::size_t StateCount = 8;
    enum class Phase : std::uint8_t { Starting, Running, Closing, Ended };

    explicit Gate(Phase phase = Phase::Running) : phase_(phase) {}
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    template <State Entered>
    class Guard {
    public:
        explicit Guard(Gate& gate) : gate_(gate) { gate_.Enter(Entered); }
        ~Guard() { gate_.Leave(Entered); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        Gate& gate_;
    };
    using Batch = Guard<State::Batch>;
    using Hold = Guard<State::Hold>;
    using PollStop = Guard<State::PollStop>;
    using Work = Guard<State::Work>;
    using Dialog = Guard<State::Dialog>;

    Answer Decide(Request request) const;
    bool Is(State state) const;

    /// Returns whether a command that was queued may run now.  Unlike Decide, it ignores State::Closing, so
    /// that the command that closes the console can run.
    bool QueuedMayRun() const;

    /// Returns whether a poll that is due now may run.  After the answer Later, PollIsMissed returns true
    /// until the next poll runs.
    bool AdmitPoll();
    bool PollIsMissed() const { return pollIsMissed_; }

    /// Starts a pause if the tool bar shows none, otherwise ends it.  Returns whether the tool bar now shows
    /// a pause.
    bool TogglePause();
    /// Returns whether queued datagrams must stay queued: during a pause, and during a batch.  compatibility:
    /// the end of a batch also ends a pause that began during the batch, but the tool bar still shows that
    /// pause.
    bool ProcessingPaused() const { return Is(State::Pause) || Is(State::Batch); }
    bool SyslogDeleteInProgress() const { return Is(State::Hold); }

    /// Enters a later phase.  Returns false and changes nothing if the gate has already reached that phase or
    /// a later one.
    bool Advance(Phase phase);
    Phase CurrentPhase() const { return phase_; }

    /// Sets a function that is called whenever a guard has left its state, and when the start is over.
    void WhenReleased(std::function<void(State)> released) { released_ = std::move(released); }

private:
    void Enter(State state) { ++depths_[Index(state)]; }
    void Leave(State state);
    /// Returns the answer if the console is in no other state.
    static Answer AnswerIn(State state, Request request);
    Answer Strictest(Request request, State last) const;
    static constexpr std::size_t Index(State state) { return static_cast<std::size_t>(state); }

    std::array<int, StateCount> depths_{};  ///< how many guards of each state there are
    Phase phase_;
    bool pause_ = false;
    bool pauseShown_ = false;
    bool pollIsMissed_ = false;
    std::function<void(State)> released_;
};

}  // namespace tallyhorn
