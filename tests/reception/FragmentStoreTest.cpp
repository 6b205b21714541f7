#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reception/FragmentStore.h"
#include "tests/support/FakeClock.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

struct Case {
    const char* What;
    Texts Datagrams;
    Texts Complete;
    std::size_t SlotsLeft;
};

class FragmentStoreTest : public testing::Test {
protected:
    void Add(const Texts& datagrams) {
        for (const std::string& datagram : datagrams)
            store_.Add(datagram, clock_.Now());
    }
    Texts Collect() {
        Texts complete;
        store_.Collect([&](std::string&& text) { complete.push_back(std::move(text)); });
        return complete;
    }

    FakeClock clock_;
    FragmentStore store_;
};

std::string Part(const std::string& header, char fill, std::size_t length) {
    return header + std::string(length, fill);
}

TEST_F(FragmentStoreTest, PutsTextsTogether) {
    const std::string a384(384, 'a');
    const std::string b385(385, 'b');
    const std::vector<Case> cases = {
        {"the parts below the last index are the text",
         {Part("*7-0-2-", 'a', 384), "*7-1-2-bc"},
         {a384 + "bc"},
         0},
        {"the count is meant as it is: all parts are one too many",
         {Part("*7-0-2-", 'a', 384), "*7-1-2-bc", "*7-2-2-d"},
         {},
         1},
        {"a first part is cut to its last 384 characters, whichever it is",
         {Part("*7-1-2-", 'b', 385), Part("*7-0-2-", 'a', 384)},
         {a384 + b385.substr(1)},
         0},
        {"a short first part keeps its header", {"*7-0-2-a", "*7-1-2-b"}, {"*7-0-2-ab"}, 0},
        {"data may hold dashes, stars and nothing",
         {"*7-0-3-", "*7-1-3-x-*y-", "*7-2-3-"},
         {"*7-0-3-x-*y-"},
         0},
        {"a missing part is empty, the last one is not used", {"*7-0-2-a", "*7-2-2-c"}, {"*7-0-2-a"}, 0},
        {"a part that comes again counts again", {"*7-1-2-a", "*7-1-2-b"}, {"b"}, 0},
        {"one part of two completes", {"*7-1-1-a"}, {""}, 0},
        {"none of one never does", {"*7-0-0-a"}, {}, 1},
        {"a part outside the text counts and is dropped", {"*7-0-2-a", "*7-9-2-b"}, {"*7-0-2-a"}, 0},
        {"the first part's count holds", {"*7-0-2-a", "*7-1-9-b"}, {"*7-0-2-ab"}, 0},
        {"texts come out in the order of their first parts",
         {"*9-0-2-a", "*3-0-2-b", "*3-1-2-c", "*9-1-2-d"},
         {"*9-0-2-ad", "*3-0-2-bc"},
         0},
        {"the id 0 is nobody's", {"*0-0-1-a", "*00-0-1-a"}, {}, 0},
        {"leading zeros are digits", {"*007-00-01-a"}, {"*007-00-01-a"}, 0},
        {"numbers up to 32767", {"*32767-0-1-a", "*1-32767-32767-b", "*2-0-32768-c"}, {"*32767-0-1-a"}, 1},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.What);
        store_.Reset();
        Add(row.Datagrams);
        EXPECT_EQ(Collect(), row.Complete);
        EXPECT_EQ(store_.SlotsTaken(), row.SlotsLeft);
    }
}

TEST_F(FragmentStoreTest, DropsMalformedHeaders) {
    Add({"",           "*",         "**",           "*1",           "*1-",        "*1-0",
         "*1-0-",      "*1-0-1",    "*--1-a",       "*1--1-a",      "*1-0--a",    "*-1-0-1-a",
         "*1--0-1-a",  "*+1-0-1-a", "* 1-0-1-a",    "*1 -0-1-a",    "*1-0x0-1-a", "*1-0-1 -a",
         "*1.0-0-1-a", "*1_0_1_a",  "*32768-0-1-a", "*65537-0-1-a", "1-0-1-a",    "*one-0-1-a"});
    Add({"*1-99999999999-1-a", "*4294967297-0-1-a", "*99999999999999999999999999-0-1-a",
         std::string("*1\0-0-1-a", 9)});
    EXPECT_EQ(store_.SlotsTaken(), 0U);
    EXPECT_TRUE(Collect().empty());
}

TEST_F(FragmentStoreTest, GrowsByHalvesRoundedToEven) {
    std::vector<std::size_t> bounds{store_.UpperBound()};
    for (int id = 1; id <= 32767; ++id) {
        // A count that would need 4 GB, were it taken at its word.
        store_.Add('*' + std::to_string(id) + "-0-32767-data", clock_.Now());
        if (store_.UpperBound() != bounds.back())
            bounds.push_back(store_.UpperBound());
    }
    const std::vector<std::size_t> expected{1000, 1500, 2250, 3375, 5062, 7593, 11390, 17085, 25628, 38442};
    EXPECT_EQ(bounds, expected);
    EXPECT_EQ(store_.SlotsTaken(), 32767U);
    store_.Reset();
    EXPECT_EQ(store_.UpperBound(), 1000U);
    EXPECT_EQ(store_.SlotsTaken(), 0U);
    EXPECT_TRUE(Collect().empty());
}

TEST_F(FragmentStoreTest, TakesTheLowestFreeSlotAgain) {
    Add({"*1-0-1-a", "*2-0-2-b", "*3-0-1-c"});
    EXPECT_EQ(Collect().size(), 2U);
    // 4 and 5 take the slots of 1 and 3, around that of 2.
    Add({"*4-0-1-d", "*5-0-1-e", "*6-0-1-f", "*2-1-2-g"});
    EXPECT_EQ(Collect(), (Texts{"*4-0-1-d", "*2-0-2-bg", "*5-0-1-e", "*6-0-1-f"}));
}

TEST_F(FragmentStoreTest, ForgetsATextHalfAMinuteAfterItsLastPart) {
    Add({"*1-0-3-a", "*2-0-2-b"});
    clock_.Advance(std::chrono::seconds(20));
    Add({"*1-1-3-c"});
    clock_.Advance(std::chrono::seconds(10));
    store_.Expire(clock_.Now());
    EXPECT_EQ(store_.SlotsTaken(), 2U) << "30 seconds are not more than 30";
    clock_.Advance(std::chrono::milliseconds(1));
    store_.Expire(clock_.Now());
    EXPECT_EQ(store_.SlotsTaken(), 1U);
    Add({"*1-2-3-d", "*2-1-2-e"});
    EXPECT_EQ(Collect(), Texts{"*1-0-3-acd"});
}

}  // namespace
}  // namespace tallyhorn
