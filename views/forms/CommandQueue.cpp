#include "views/forms/CommandQueue.h"

#include <QMetaObject>
#include <algorithm>

namespace tallyhorn {

CommandQueue::CommandQueue(Gate& gate) : gate_(gate) {
    gate_.WhenReleased([this](Gate::State state) { Released(state); });
}

void CommandQueue::Run(const Command& command, Kind kind, std::optional<int> key) {
    const bool waits = key && std::any_of(waiting_.begin(), waiting_.end(),
                                          [&](const Waiting& other) { return other.Key == key; });
    if (gate_.Decide(Gate::Request::Command) != Gate::Answer::Refuse && !waits)
        RunOrWait({command, kind, key});
}

void CommandQueue::RunLast(const Command& command) {
    if (!gate_.Advance(Gate::Phase::Closing))
        return;
    waiting_.clear();
    RunOrWait({command, Kind::Work, std::nullopt});
}

void CommandQueue::DropWaiting() {
    if (!gate_.Is(Gate::State::Closing))
        waiting_.clear();
}

void CommandQueue::RunOrWait(const Waiting& command) {
    if (!gate_.QueuedMayRun()) {
        waiting_.push_back(command);
    } else if (command.As == Kind::Dialog) {
        const Gate::Dialog dialog(gate_);
        command.Do();
    } else {
        RunAsWork(command.Do);
    }
}

void CommandQueue::RunAsWork(const Command& work) {
    const Gate::Work guard(gate_);
    work();
}

void CommandQueue::Released(Gate::State state) {
    if (state == Gate::State::Work && !IsAtWork())
        emit WorkDone();
    if (gate_.QueuedMayRun() && !waiting_.empty())
        QMetaObject::invokeMethod(this, &CommandQueue::RunWaiting, Qt::QueuedConnection);
}

/// Runs only one command, because it may close the console; when it ends, Released starts the next.
void CommandQueue::RunWaiting() {
    if (!gate_.QueuedMayRun() || waiting_.empty())
        return;
    const Waiting next = waiting_.front();
    waiting_.pop_front();
    RunOrWait(next);
}

}  // namespace tallyhorn
