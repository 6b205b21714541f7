#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <optional>

#include "views/messages/Gate.h"

namespace tallyhorn {

/// Keeps the user's commands that may not run yet, and runs them in the order given once the gate permits.  A
/// command that ran in the middle of other work would find lists and stores half changed, and its question
/// would stop that work until the user answers.
class CommandQueue final : public QObject {
    Q_OBJECT

public:
    using Command = std::function<void()>;

    /// The state that the gate is in while a command runs.  Other commands wait until that state ends.
    enum class Kind { Work, Dialog };

    /// `gate` must outlive the queue.  The queue sets itself as the gate's only handler of WhenReleased.
    explicit CommandQueue(Gate& gate);
    ~CommandQueue() override { gate_.WhenReleased(nullptr); }

    /// Runs the command now, or when the gate permits.  Does nothing after a call of RunLast, or if a command
    /// with the same `key` is already waiting.
    void Run(const Command& command, Kind kind = Kind::Work, std::optional<int> key = std::nullopt);
    /// Runs the command that closes the console, now or when the gate permits.  Drops the waiting commands
    /// and refuses all later ones.
    void RunLast(const Command& command);
    /// Drops the waiting commands except that of RunLast.  To be called when a dialog or a question has
    /// closed: it may have been open for hours, and the user no longer expects the commands given meanwhile.
    void DropWaiting();
    /// Runs a timer's routine at once, even during other work, and makes commands wait meanwhile.  Does not
    /// ask the gate; a routine that needs its permission asks for it.
    void RunAsWork(const Command& work);

    bool IsAtWork() const { return gate_.Is(Gate::State::Work); }

signals:
    /// Emitted when work has ended that did not run inside other work.
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
