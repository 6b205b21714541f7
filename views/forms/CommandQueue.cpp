#include "views/forms/CommandQueue.h"

#include <QMetaObject>
#include <QScopeGuard>
#include <utility>

namespace tallyhorn {
void CommandQueue::Run(const Command& command, Kind kind) {
    if (!closed_)
        RunOrWait({command, kind});
}

void CommandQueue::RunLast(const Command& command) {
    if (std::exchange(closed_, true))
        return;
    waiting_.clear();
    RunOrWait({command, Kind::Work});
}

void CommandQueue::RunOrWait(const Waiting& command) {
    if (!MayRun())
        waiting_.push_back(command);
    else if (command.As == Kind::Dialog)
        RunDialog(command.Do);
    else
        RunAsWork(command.Do);
}

void CommandQueue::RunAsWork(const Command& work) {
    BeginWork();
    const auto end = qScopeGuard([this] { EndWork(); });
    work();
}

void CommandQueue::EndWork() {
    if (--workDepth_ > 0)
        return;
    emit WorkDone();
    RunWaitingLater();
}

void CommandQueue::RunDialog(const Command& dialog) {
    ++dialogDepth_;
    const auto end = qScopeGuard([this] {
        --dialogDepth_;
        RunWaitingLater();
    });
    dialog();
}

void CommandQueue::RunWaitingLater() {
    if (MayRun() && !waiting_.empty())
        QMetaObject::invokeMethod(this, &CommandQueue::RunWaiting, Qt::QueuedConnection);
}

/// One at a time: any of them may be the last.
void CommandQueue::RunWaiting() {
    if (!MayRun() || waiting_.empty())
        return;
    const Waiting next = waiting_.front();
    waiting_.pop_front();
    RunOrWait(next);
}

}  // namespace tallyhorn
