#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <optional>

#include "views/messages/Gate.h"

namespace tallyhorn {

/// Holds the user's commands that may not run yet, and runs them in their order once the gate permits.  A
/// command that ran in the middle of other work would find lists and stores half changed, and its question
/// would stop that work until the user answers.
class CommandQueue final : public QObject {
    Q_OBJECT

public:
    using Command = std::function<void()>;

    /// The gate's state while a command runs.  Other commands wait for the end of either state.
    enum class Kind { Work, Dialog };

    /// `gate` must outlive the queue.  The queue sets itself as the gate's only handler of WhenReleased.
    explicit CommandQueue(Gate& gate);
    ~CommandQueue() override { gate_.WhenReleased(nullptr); }

    /// Runs the command now, or when the gate permits.  Does nothing once the last command has been given, or
    /// if a command with the same `key` is waiting already.
    void Run(const Command& command, Kind kind = Kind::Work, std::optional<int> key = std::nullopt);
    /// Runs the last command of all, now or when the gate permits.  Drops the waiting commands and refuses
    /// all later ones.
    void RunLast(const Command& command);
    /// Drops the waiting commands, except the last.  To be called when a dialog or a question has closed: it
    /// may have been open for hours, and the user no longer expects what waited behind it.
    void DropWaiting();
    /// Runs a timer's routine at once, even during other work: such routines ask the gate themselves.
    void RunAsWork(const Command& work);

    bool IsAtWork() const { return gate_.Is(Gate::State::Work); }

signals:
    /// Emitted when the outermost piece of work has ended.
    void WorkDone();

private:
    struct Waiting {
        Command Do;
        Kind As = Kind::Work;
        std::optional<int> Key;
    };

    void RunOrWait(const Waiting& command);
    void Released(Gate::State state);
    void RunWaiting();

    Gate& gate_;
    std::deque<Waiting> waiting_;
};

}  // namespace tallyhorn
