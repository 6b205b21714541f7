#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "views/messages/Gate.h"

namespace tallyhorn {
namespace {

using Request = Gate::Request;
using Answer = Gate::Answer;
using State = Gate::State;

/// A gate with a chosen set of states.
class GateIn {
public:
    explicit GateIn(const std::vector<State>& states) : gate_(PhaseOf(states)) {
        for (const State state : states)
            Enter(state);
    }
    /// The answers to poll, datagrams, command, dialog and end, by their initials.
    std::string Answers() const {
        std::string answers;
        for (std::size_t i = 0; i < Gate::RequestCount; ++i)
            answers += "RQLX"[static_cast<std::size_t>(gate_.Decide(static_cast<Request>(i)))];
        return answers;
    }

private:
    static Gate::Phase PhaseOf(const std::vector<State>& states) {
        return states.empty() || states.front() != State::Starting ? Gate::Phase::Running
                                                                   : Gate::Phase::Starting;
    }
    void Enter(State state) {
        switch (state) {
            case State::Starting:
                return;
            case State::Batch:
                batch_.emplace(gate_);
                return;
            case State::Hold:
                hold_.emplace(gate_);
                return;
            case State::PollStop:
                stop_.emplace(gate_);
                return;
            case State::Pause:
                gate_.TogglePause();
                return;
            case State::Work:
                work_.emplace(gate_);
                return;
            case State::Dialog:
                dialog_.emplace(gate_);
                return;
            case State::Closing:
                gate_.Advance(Gate::Phase::Closing);
                return;
        }
    }

    Gate gate_;
    std::optional<Gate::Batch> batch_;
    std::optional<Gate::Hold> hold_;
    std::optional<Gate::PollStop> stop_;
    std::optional<Gate::Work> work_;
    std::optional<Gate::Dialog> dialog_;
};

TEST(Gate, AnswersEveryRequestInEveryStateAndTheStrictestAnswerCounts) {
    const struct {
        std::vector<State> States;
        const char* Answers;  ///< Run, Queue, Later, X for Refuse
    } cases[] = {
        {{}, "RRRRR"},
        {{State::Starting}, "RRQQL"},
        {{State::Batch}, "LLQQQ"},
        {{State::Hold}, "LLQQQ"},
        {{State::PollStop}, "XRQQQ"},
        {{State::Pause}, "LQRRR"},
        {{State::Work}, "RRQQQ"},
        {{State::Dialog}, "RRQQQ"},
        {{State::Closing}, "RRXXX"},
        {{State::Pause, State::Hold}, "LLQQQ"},
        {{State::Pause, State::Dialog}, "LQQQQ"},
        {{State::Pause, State::PollStop}, "XQQQQ"},
        {{State::Starting, State::Hold}, "LLQQL"},
        {{State::Dialog, State::Closing}, "RRXXX"},
        {{State::Hold, State::Closing}, "LLXXX"},
    };
    for (const auto& [states, answers] : cases)
        EXPECT_EQ(GateIn(states).Answers(), answers) << states.size();
}

TEST(Gate, AStateEndsWithItsOutermostGuard) {
    Gate gate;
    std::vector<std::pair<State, bool>> released;
    gate.WhenReleased([&](State state) { released.emplace_back(state, gate.QueuedMayRun()); });
    {
        const Gate::Hold outer(gate);
        { const Gate::Hold inner(gate); }
        EXPECT_TRUE(gate.SyslogDeleteInProgress());
    }
    EXPECT_FALSE(gate.SyslogDeleteInProgress());
    EXPECT_EQ(released, (std::vector<std::pair<State, bool>>{{State::Hold, false}, {State::Hold, true}}));
}

TEST(Gate, ABatchEndsThePauseThatBeganInsideItWhileTheToolBarShowsItStill) {
    Gate gate;
    {
        const Gate::Batch batch(gate);
        EXPECT_TRUE(gate.ProcessingPaused());
        EXPECT_TRUE(gate.TogglePause());
    }
    EXPECT_FALSE(gate.ProcessingPaused());
    EXPECT_FALSE(gate.TogglePause()) << "the command ends the pause that is shown";
    EXPECT_TRUE(gate.TogglePause());
    EXPECT_TRUE(gate.ProcessingPaused());
}

TEST(Gate, RemembersAMissedPollUntilOneRuns) {
    Gate gate;
    {
        const Gate::Hold hold(gate);
        EXPECT_FALSE(gate.AdmitPoll());
    }
    {
        const Gate::PollStop stop(gate);
        EXPECT_FALSE(gate.AdmitPoll());
        EXPECT_TRUE(gate.PollIsMissed());
    }
    EXPECT_TRUE(gate.AdmitPoll());
    EXPECT_FALSE(gate.PollIsMissed());
    const Gate::PollStop stop(gate);
    EXPECT_FALSE(gate.AdmitPoll());
    EXPECT_FALSE(gate.PollIsMissed()) << "a poll during a NetBIOS delete is dropped";
}

TEST(Gate, APhaseOnlyGoesForwardAndTheLastCommandMayStillRun) {
    Gate gate(Gate::Phase::Starting);
    int starts = 0;
    gate.WhenReleased([&](State state) { starts += state == State::Starting ? 1 : 0; });
    EXPECT_TRUE(gate.Advance(Gate::Phase::Running));
    EXPECT_EQ(starts, 1);
    EXPECT_TRUE(gate.Advance(Gate::Phase::Closing));
    EXPECT_FALSE(gate.Advance(Gate::Phase::Closing));
    EXPECT_TRUE(gate.QueuedMayRun());
    EXPECT_TRUE(gate.Advance(Gate::Phase::Ended));
    EXPECT_FALSE(gate.Advance(Gate::Phase::Running));
    EXPECT_TRUE(gate.Is(State::Closing));
}

}  // namespace
}  // namespace tallyhorn
