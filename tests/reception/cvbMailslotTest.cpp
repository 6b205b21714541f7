#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reception/cvbMailslot.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMailslots.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

class cvbMailslotTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(server_.InitializeMailslot("Test", true));
        ASSERT_TRUE(client_.InitializeMailslot("Test", false));
    }
    FakeMailslots::Mailslot& Mailslot() { return mailslots_.ByName["Test"]; }
    void Waits(const Texts& datagrams) { Mailslot().Waiting.assign(datagrams.begin(), datagrams.end()); }
    /// What ReadMessages places, with its result checked against it.
    Texts Read() {
        Texts messages{"left", "from", "before"};
        const std::int16_t count = server_.ReadMessages(messages);
        EXPECT_EQ(static_cast<std::size_t>(count) + 1, messages.size());
        EXPECT_EQ(messages.at(0), "");
        messages.erase(messages.begin());
        return messages;
    }
    Texts Sent() { return {Mailslot().Waiting.begin(), Mailslot().Waiting.end()}; }

    FakeMailslots mailslots_;
    FakeClock clock_;
    cvbMailslot server_{mailslots_, clock_};
    cvbMailslot client_{mailslots_, clock_};
};

TEST_F(cvbMailslotTest, TellsWhatItWasAskedFor) {
    cvbMailslot fresh(mailslots_, clock_);
    EXPECT_EQ(fresh.CheckForMessages(), 0);
    EXPECT_FALSE(fresh.InitializeMailslot("Test", true)) << "the name is taken";
    EXPECT_TRUE(fresh.ServerModeActive());
    EXPECT_EQ(fresh.Handle(), -1);
    EXPECT_FALSE(fresh.InitializeMailslot("Nobody", false));
    EXPECT_FALSE(fresh.SendMessage("lost"));
    EXPECT_EQ(Mailslot().MaximumSize, 401U);
    EXPECT_NE(server_.Handle(), -1);
    server_.Terminate();
    EXPECT_EQ(server_.Handle(), -1);
    EXPECT_TRUE(fresh.InitializeMailslot("Test", true));
}

TEST_F(cvbMailslotTest, ReadsWholeTextsInTheirOrder) {
    EXPECT_EQ(Read(), Texts{});
    Waits({"one\0"s, "two\0"s, "\0"s, "with\0more behind"s, "*\0"s, std::string(400, 'x') + '\0'});
    EXPECT_EQ(server_.CheckForMessages(), 6);
    EXPECT_EQ(Read(), (Texts{"one", "two", "", "with", std::string(400, 'x')}));
    EXPECT_EQ(server_.CheckForMessages(), 0);
}

TEST_F(cvbMailslotTest, ATextWithoutNulRunsOnIntoTheOneBeforeIt) {
    const auto padded = [](std::string text) { return text.append(401 - text.size(), ' '); };
    const struct {
        Texts Datagrams;
        Texts Expected;
    } cases[] = {
        {{"first"}, {"first"}},  // the buffer starts as NULs
        {{""}, {""}},
        {{"abcdef\0"s, "XY"}, {"abcdef", padded("XYcdef")}},
        {{"abcdef\0"s, "XY", "Z"}, {"abcdef", padded("XYcdef"), padded("ZYcdef")}},
        {{"abcdef\0"s, ""}, {"abcdef", padded("abcdef")}},
        {{"abcdef\0"s, "XY", "Q\0"s}, {"abcdef", padded("XYcdef"), "Q"}},
        {{std::string(401, 'x'), std::string(400, 'y')},
         {std::string(401, 'x'), std::string(400, 'y') + 'x'}},
        {{"ab\0cdef"s, "X"}, {"ab", padded("Xb")}},
    };
    for (const auto& row : cases) {
        Waits(row.Datagrams);
        EXPECT_EQ(Read(), row.Expected) << row.Datagrams.back();
    }
}

TEST_F(cvbMailslotTest, WholeTextsComeBeforeThoseInParts) {
    Waits({"*5-0-2-a\0"s, "one\0"s, "*5-1-2-b\0"s, "two\0"s, "*6-0-2-lost\0"s});
    EXPECT_EQ(Read(), (Texts{"one", "two", "*5-0-2-ab"}));
    Waits({"*6-1-2-b\0"s});
    EXPECT_EQ(Read(), Texts{}) << "parts do not wait for the next call";
}

TEST_F(cvbMailslotTest, AFailingReadEndsWithNothingCounted) {
    Waits({"one\0"s, "*5-0-1-a\0"s, "two\0"s});
    Mailslot().ReadsBeforeFailure = 2;
    Texts messages;
    EXPECT_EQ(server_.ReadMessages(messages), 0);
    EXPECT_EQ(messages, (Texts{"", "one"}));
    Mailslot().ReadsBeforeFailure.reset();
    EXPECT_EQ(Read(), Texts{"two"});
}

TEST_F(cvbMailslotTest, BelievesNothingThatTheMailslotTells) {
    Waits({"one\0"s});
    Mailslot().NextSize = std::size_t{0} - 1;
    EXPECT_EQ(Read(), Texts{"one"});
    Waits({"one\0"s});
    Mailslot().NextSize = 1;
    EXPECT_EQ(Read(), Texts{}) << "the system refuses to cut a text";
    Mailslot().NextSize.reset();
    Mailslot().Count = 3;
    Texts messages;
    EXPECT_EQ(server_.ReadMessages(messages), 0);
    EXPECT_EQ(messages, (Texts{"", "one"}));
    Mailslot().InfoFails = true;
    EXPECT_EQ(server_.CheckForMessages(), 0);
}

TEST_F(cvbMailslotTest, TheCountEndsAtItsLimitAndTheRestWaits) {
    Waits(Texts(70'000, "x\0"s));
    for (const std::size_t expected : {32767, 32767, 4466}) {
        EXPECT_EQ(static_cast<std::size_t>(server_.CheckForMessages()), expected);
        EXPECT_EQ(Read().size(), expected);
    }
}

TEST_F(cvbMailslotTest, SendsShortTextsAsTheyAre) {
    for (const std::string& text : {""s, "a"s, "a\0b\xFF"s, std::string(400, 'x')}) {
        Mailslot().Waiting.clear();
        EXPECT_TRUE(client_.SendMessage(text));
        EXPECT_EQ(Sent(), Texts{text});
    }
    Mailslot().WritesBeforeFailure = 0;
    EXPECT_FALSE(client_.SendMessage("a"));
}

TEST_F(cvbMailslotTest, SendsLongTextsInParts) {
    /// Where each part starts and ends, counted from 1 with both ends included; an empty one ends before its
    /// start.
    const struct {
        std::size_t Length;
        std::vector<std::pair<std::size_t, std::size_t>> Parts;
    } cases[] = {
        {401, {{1, 384}, {385, 401}}},
        {577, {{1, 384}, {385, 577}}},
        {578, {{1, 384}, {385, 578}, {1, 0}}},
        {600, {{1, 384}, {385, 600}, {1, 0}}},
        {770, {{1, 384}, {385, 769}, {770, 770}}},
        {1000, {{1, 384}, {385, 769}, {770, 1000}, {1, 0}}},
    };
    int number = 0;
    for (const auto& row : cases) {
        std::string text;
        for (std::size_t i = 0; i < row.Length; ++i)
            text += static_cast<char>(1 + i % 255);
        Mailslot().Waiting.clear();
        EXPECT_TRUE(client_.SendMessage(text));
        ++number;
        Texts expected;
        for (const auto& [first, last] : row.Parts)
            expected.push_back('*' + std::to_string(number) + '-' + std::to_string(expected.size()) + '-' +
                               std::to_string(row.Parts.size() - 1) + '-' +
                               text.substr(first - 1, last - first + 1) + '\0');
        EXPECT_EQ(Sent(), expected) << row.Length;
    }
}

TEST_F(cvbMailslotTest, NumbersTextsFrom1To30000) {
    for (int i = 1; i < 30'000; ++i) {
        client_.SendMessage("counted though sent whole");
        Mailslot().Waiting.clear();
    }
    const std::string text(401, 'x');
    client_.SendMessage(text);
    client_.SendMessage(text);
    EXPECT_TRUE(Sent().at(0).starts_with("*30000-0-1-"));
    EXPECT_TRUE(Sent().at(2).starts_with("*1-0-1-"));
}

TEST_F(cvbMailslotTest, APartThatCannotBeWrittenIsAnError) {
    Mailslot().WritesBeforeFailure = 1;
    EXPECT_THROW(client_.SendMessage(std::string(600, 'x')), MailslotWriteError);
    EXPECT_EQ(Sent().size(), 1U);
    client_.Terminate();
    EXPECT_THROW(client_.SendMessage(std::string(401, 'x')), MailslotWriteError);
}

}  // namespace
}  // namespace tallyhorn
