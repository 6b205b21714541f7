#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "tests/support/Cases.h"
#include "views/messages/Gate.h"

namespace tallyhorn {
namespace {

using State = Gate::State;

/// Returns a letter for each answer of a gate in the given states: to poll, datagrams, command, end.
std::string AnswersIn(std::string_view states) {
    Gate gate(states.starts_with("Starting") ? Gate::Phase::Starting : Gate::Phase::Running);
    std::vector<std::shared_ptr<void>> guards;
    const std::map<std::string, std::function<void()>> enter = {
        {"", [] {}},
        {"Starting", [] {}},  // nothing to do: the gate was made in this phase
        {"Batch", [&] { guards.push_back(std::make_shared<Gate::Batch>(gate)); }},
        {"Hold", [&] { guards.push_back(std::make_shared<Gate::Hold>(gate)); }},
        {"PollStop", [&] { guards.push_back(std::make_shared<Gate::PollStop>(gate)); }},
        {"Pause", [&] { gate.TogglePause(); }},
        {"Work", [&] { guards.push_back(std::make_shared<Gate::Work>(gate)); }},
        {"Dialog", [&] { guards.push_back(std::make_shared<Gate::Dialog>(gate)); }},
        {"Closing", [&] { gate.Advance(Gate::Phase::Closing); }},
    };
    for (const std::string& state : SplitAtBars(states))
        enter.at(state)();
    std::string answers;
    for (std::size_t i = 0; i < Gate::RequestCount; ++i)
        answers += "RQLX"[static_cast<std::size_t>(gate.Decide(static_cast<Gate::Request>(i)))];
    return answers;
}

TEST(Gate, GivesTheStrictestAnswerOfAllItsStates) {
    // R for Run, Q for Queue, L for Later, X for Refuse.
    for (const auto& [states, answers] : std::vector<std::pair<const char*, const char*>>{
             {"", "RRRR"},
             {"Starting", "RRQL"},
             {"Batch", "LLQQ"},
             {"Hold", "LLQQ"},
             {"PollStop", "XRQQ"},
             {"Pause", "LQRR"},
             {"Work", "RRQQ"},
             {"Dialog", "RRQQ"},
             {"Closing", "RRXX"},
             {"Pause|Hold", "LLQQ"},
             {"Pause|Dialog", "LQQQ"},
             {"Pause|PollStop", "XQQQ"},
             {"Starting|Hold", "LLQL"},
             {"Hold|Closing", "LLXX"},
         })
        EXPECT_EQ(AnswersIn(states), answers) << states;
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

TEST(Gate, ABatchEndsThePauseThatBeganInsideItButTheToolBarStillShowsThePause) {
    Gate gate;
    {
        const Gate::Batch batch(gate);
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

TEST(Gate, PhasesOnlyAdvanceAndTheLastCommandMayStillRun) {
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
