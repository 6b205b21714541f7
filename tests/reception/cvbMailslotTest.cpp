#include <gtest/gtest.h>

#include <utility>

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
    void Put(const Texts& texts) { Mailslot().Waiting.assign(texts.begin(), texts.end()); }
    /// Returns the texts that ReadMessages puts into the vector, and checks the count that it returns.
    Texts Read(bool succeeds = true) {
        Texts messages{"left", "from", "before"};
        const std::int16_t count = server_.ReadMessages(messages);
        EXPECT_EQ(messages.at(0), "");
        messages.erase(messages.begin());
        EXPECT_EQ(static_cast<std::size_t>(count), succeeds ? messages.size() : 0);
        return messages;
    }
    Texts Sent() { return {Mailslot().Waiting.begin(), Mailslot().Waiting.end()}; }

    FakeMailslots mailslots_;
    FakeClock clock_;
    cvbMailslot server_{mailslots_, clock_};
    cvbMailslot client_{mailslots_, clock_};
};

TEST_F(cvbMailslotTest, ReportsWhetherItIsOpen) {
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

TEST_F(cvbMailslotTest, ATextWithoutNulContinuesWithTheTextBeforeIt) {
    const auto padded = [](std::string text) { return text.append(401 - text.size(), ' '); };
    const std::pair<Texts, Texts> cases[] = {
        {{"first"}, {"first"}},  // the buffer contains NULs at first
        {{"abcdef\0"s, "XY", "Z", "Q\0"s}, {"abcdef", padded("XYcdef"), padded("ZYcdef"), "Q"}},
        {{"abcdef\0"s, ""}, {"abcdef", padded("abcdef")}},
        {{std::string(401, 'x'), std::string(400, 'y')},
         {std::string(401, 'x'), std::string(400, 'y') + 'x'}},
        {{"ab\0cdef"s, "X"}, {"ab", padded("Xb")}},
    };
    for (const auto& [datagrams, expected] : cases) {
        Put(datagrams);
        EXPECT_EQ(Read(), expected) << datagrams.back();
    }
}

TEST_F(cvbMailslotTest, ReadsWholeTextsAndThenJoinedOnes) {
    EXPECT_EQ(Read(), Texts{});
    const std::string longest(400, 'x');
    Put({"*5-0-2-a\0"s, "one\0"s, "*5-1-2-b\0"s, "two\0"s, "\0"s, "with\0more behind"s, "*\0"s,
         longest + '\0', "*6-0-2-lost\0"s});
    EXPECT_EQ(Read(), (Texts{"one", "two", "", "with", longest, "*5-0-2-ab"}));
    EXPECT_EQ(server_.CheckForMessages(), 0);
    Put({"*6-1-2-b\0"s});
    EXPECT_EQ(Read(), Texts{}) << "parts are not kept for the next call";
}

TEST_F(cvbMailslotTest, SurvivesFailingReadsAndFalseInformation) {
    Put({"one\0"s, "*5-0-1-a\0"s, "two\0"s});
    Mailslot().ReadsBeforeFailure = 2;
    EXPECT_EQ(Read(false), Texts{"one"});
    Mailslot().ReadsBeforeFailure.reset();
    EXPECT_EQ(Read(), Texts{"two"});
    Put({"one\0"s});
    Mailslot().NextSize = std::size_t{0} - 1;
    EXPECT_EQ(Read(), Texts{"one"});
    Put({"one\0"s});
    Mailslot().NextSize = 1;
    EXPECT_EQ(Read(), Texts{}) << "the system does not cut a text";
    Mailslot().NextSize.reset();
    Mailslot().Count = 3;
    EXPECT_EQ(Read(false), Texts{"one"});
    Mailslot().InfoFails = true;
    EXPECT_EQ(server_.CheckForMessages(), 0);
}

TEST_F(cvbMailslotTest, SendsShortTextsAsTheyAreAndReportsFailedWrites) {
    const Texts texts{"", "a", "a\0b\xFF"s, std::string(400, 'x')};
    for (const std::string& text : texts)
        EXPECT_TRUE(client_.SendMessage(text));
    EXPECT_EQ(Sent(), texts);
    Mailslot().WritesBeforeFailure = 1;
    EXPECT_THROW(client_.SendMessage(std::string(600, 'x')), MailslotWriteError);
    EXPECT_EQ(Sent().size(), texts.size() + 1) << "only the first part is written";
    EXPECT_FALSE(client_.SendMessage("a"));
    client_.Terminate();
    EXPECT_THROW(client_.SendMessage(std::string(401, 'x')), MailslotWriteError);
}

TEST_F(cvbMailslotTest, SendsLongTextsInParts) {
    const std::vector<std::size_t> lengthsOfParts[] = {
        {384, 17}, {384, 193}, {384, 194, 0}, {384, 385, 1}, {384, 385, 231, 0}};
    int number = 0;
    for (const std::vector<std::size_t>& lengths : lengthsOfParts) {
        std::string text;
        Texts expected;
        const std::string header = '*' + std::to_string(++number) + '-';
        for (const std::size_t length : lengths) {
            std::string part;
            for (std::size_t i = 0; i < length; ++i)
                part += static_cast<char>(1 + (text.size() + i) % 255);
            std::string datagram = header;
            datagram.append(std::to_string(expected.size())).append(1, '-');
            datagram.append(std::to_string(lengths.size() - 1)).append(1, '-').append(part).append(1, '\0');
            expected.push_back(datagram);
            text += part;
        }
        Mailslot().Waiting.clear();
        EXPECT_TRUE(client_.SendMessage(text));
        EXPECT_EQ(Sent(), expected) << text.size();
    }
}

TEST_F(cvbMailslotTest, NumbersTextsFrom1To30000) {
    for (int i = 1; i < 30'000; ++i)
        client_.SendMessage("counted although it is sent whole");
    Mailslot().Waiting.clear();
    const std::string text(401, 'x');
    client_.SendMessage(text);
    client_.SendMessage(text);
    EXPECT_TRUE(Sent().at(0).starts_with("*30000-0-1-"));
    EXPECT_TRUE(Sent().at(2).starts_with("*1-0-1-"));
}

}  // namespace
}  // namespace tallyhorn
