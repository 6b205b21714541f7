#pragma once

#include <QObject>
#include <deque>
#include <functional>

namespace tallyhorn {

/// Decides when a command of the user's runs.  One that is given in the middle of other work would run on
/// state that is half way from one thing to the next, and would hold that work up for as long as its question
/// stands open: so it waits for the work's end.  User-interface thread only.
class CommandQueue final : public QObject {
    Q_OBJECT

public:
    using Command = std::function<void()>;

    /// What a command is while it runs.  Other commands wait for both; a dialog, which may stand open for
    /// hours, is no work.
    enum class Kind { Work, Dialog };

    /// Runs the command now, or when what it has to wait for is over.
    void Run(const Command& command, Kind kind = Kind::Work);
    /// The same for the last command of all: those that wait are forgotten, and none is taken any more.
    void RunLast(const Command& command);
    /// Runs work that waits for nothing, since it guards itself.
    void RunAsWork(const Command& work);
    /// The same in two calls.
    void BeginWork() { ++workDepth_; }
    void EndWork();

    bool IsAtWork() const { return workDepth_ > 0; }

signals:
    /// Work has ended, and no other is under way.
    void WorkDone();

private:
    struct Waiting {
        Command Do;
        Kind As = Kind::Work;
    };

    bool MayRun() const { return workDepth_ == 0 && dialogDepth_ == 0; }
    void RunOrWait(const Waiting& command);
    void RunDialog(const Command& dialog);
    void RunWaitingLater();
    void RunWaiting();

    std::deque<Waiting> waiting_;
    bool closed_ = false;  ///< the last command has been given
    int workDepth_ = 0;    ///< how many pieces of work are under way, one inside the other
    int dialogDepth_ = 0;  ///< the same of dialogs
};

}  // namespace tallyhorn
