#include "views/messages/Gate.h"

#include <algorithm>

namespace tallyhorn {

Gate::Answer Gate::AnswerIn(State state, Request request) {
    using enum Answer;
    // One row for each state, in the order of State.
    static constexpr std::array<std::array<Answer, RequestCount>, StateCount> Table = {{
        // The columns: poll, datagrams, command, end of session.
        {Run, Run, Queue, Later},      // Starting
        {Later, Later, Queue, Queue},  // Batch
        {Later, Later, Queue, Queue},  // Hold
        {Refuse, Run, Queue, Queue},   // PollStop
        {Later, Queue, Run, Run},      // Pause
        {Run, Run, Queue, Queue},      // Work
        {Run, Run, Queue, Queue},      // Dialog
        {Run, Run, Refuse, Refuse},    // Closing
    }};
    return Table.at(Index(state)).at(static_cast<std::size_t>(request));
}

bool Gate::Is(State state) const {
    switch (state) {
        case State::Starting:
            return phase_ == Phase::Starting;
        case State::Closing:
            return phase_ >= Phase::Closing;
        case State::Pause:
            return pause_;
        default:
            return depths_.at(Index(state)) > 0;
    }
}

Gate::Answer Gate::Strictest(Request request, State last) const {
    Answer strictest = Answer::Run;
    for (std::size_t i = 0; i <= Index(last); ++i) {
        const auto state = static_cast<State>(i);
        if (Is(state))
            strictest = std::max(strictest, AnswerIn(state, request));
    }
    return strictest;
}

Gate::Answer Gate::Decide(Request request) const {
    return Strictest(request, State::Closing);
}

bool Gate::QueuedMayRun() const {
    return Strictest(Request::Command, State::Dialog) == Answer::Run;
}

bool Gate::AdmitPoll() {
    const Answer answer = Decide(Request::Poll);
    if (answer != Answer::Refuse)
        pollIsMissed_ = answer == Answer::Later;
    return answer == Answer::Run;
}

bool Gate::TogglePause() {
    pauseShown_ = !pauseShown_;
    pause_ = pauseShown_;
    return pauseShown_;
}

void Gate::Leave(State state) {
    --depths_.at(Index(state));
    if (state == State::Batch)
        pause_ = false;
    if (released_)
        released_(state);
}

bool Gate::Advance(Phase phase) {
    if (phase <= phase_)
        return false;
    phase_ = phase;
    if (phase == Phase::Running && released_)
        released_(State::Starting);
    return true;
}

}  // namespace tallyhorn
