#include <gtest/gtest.h>

#include "reception/FragmentStore.h"
#include "tests/support/Cases.h"
#include "tests/support/FakeClock.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

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

TEST_F(FragmentStoreTest, JoinsTheParts) {
    const std::string a384(384, 'a');
    const std::string b385(385, 'b');
    const struct {
        const char* What;
        Texts Datagrams;
        Texts Complete;
    } cases[] = {
        {"the text consists of the parts below the last index",
         {"*7-0-2-" + a384, "*7-1-2-bc"},
         {a384 + "bc"}},
        {"with its last part a text has one part too many", {"*7-0-2-" + a384, "*7-1-2-bc", "*7-2-2-d"}, {}},
        {"the first datagram is cut to its last 384 characters, even if it is not part 0",
         {"*7-1-2-" + b385, "*7-0-2-" + a384},
         {a384 + b385.substr(1)}},
        {"a short first datagram keeps its header", {"*7-0-2-a", "*7-1-2-b"}, {"*7-0-2-ab"}},
        {"data may contain dashes and stars, or be empty",
         {"*7-0-3-", "*7-1-3-x-*y-", "*7-2-3-"},
         {"*7-0-3-x-*y-"}},
        {"a missing part is left out, and so is the last one", {"*7-0-2-a", "*7-2-2-c"}, {"*7-0-2-a"}},
        {"a part that arrives twice counts twice", {"*7-1-2-a", "*7-1-2-b"}, {"b"}},
        {"a part beyond the last index is counted but dropped", {"*7-0-2-a", "*7-9-2-b"}, {"*7-0-2-a"}},
        {"the first datagram sets the number of parts", {"*7-0-2-a", "*7-1-9-b"}, {"*7-0-2-ab"}},
        {"texts are collected in the order of their first datagrams",
         {"*9-0-2-a", "*3-0-2-b", "*3-1-2-c", "*9-1-2-d"},
         {"*9-0-2-ad", "*3-0-2-bc"}},
        {"numbers may have leading zeros and end at 32767",
         {"*32767-0-1-a", "*1-32767-32767-b", "*2-0-32768-c", "*007-00-01-d"},
         {"*32767-0-1-a", "*007-00-01-d"}},
        {"a single part and the id 0 give no text", {"*7-0-0-a", "*0-0-1-a", "*00-0-1-a"}, {}},
        {"no malformed datagram gives a text, although a less strict reading would accept it",
         SplitAtBars("|*|**|*1|*1-|*1-0|*1-0-|*1-0-1|*--1-a|*1--1-a|*1-0--a|*-1-0-1-a|*1--0-1-a|*+1-0-1-a|"
                     "* 1-0-1-a|*1 -0-1-a|*1-0x0-1-a|*1-0-1 -a|*1.0-0-1-a|*1_0_1_a|*32768-0-1-a|1-0-1-a|"
                     "*one-0-1-a|*65537-0-1-a|*1-99999999999-1-a|*4294967297-0-1-a|*1\0-0-1-a|"
                     "*99999999999999999999999999-0-1-a"s),
         {}},
    };
    for (const auto& [what, datagrams, complete] : cases) {
        store_.Reset();
        Add(datagrams);
        EXPECT_EQ(Collect(), complete) << what;
        EXPECT_EQ(Collect(), Texts()) << what;
    }
}

TEST_F(FragmentStoreTest, GrowsByHalfRoundedToEven) {
    std::vector<std::size_t> bounds{store_.UpperBound()};
    for (int id = 1; id <= 32767; ++id) {
        // Each text announces 32,767 parts: room for all of them would take 4 GB.
        store_.Add('*' + std::to_string(id) + "-0-32767-data", clock_.Now());
        if (store_.UpperBound() != bounds.back())
            bounds.push_back(store_.UpperBound());
    }
    EXPECT_EQ(bounds,
              (std::vector<std::size_t>{1000, 1500, 2250, 3375, 5062, 7593, 11390, 17085, 25628, 38442}));
    store_.Reset();
    EXPECT_EQ(store_.UpperBound(), 1000U);
    Add({"*1-0-2-a", "*1-1-2-b"});
    EXPECT_EQ(Collect(), Texts{"*1-0-2-ab"}) << "nothing is left of the earlier text 1";
}

TEST_F(FragmentStoreTest, ReusesTheLowestFreeEntry) {
    Add({"*1-0-1-a", "*2-0-2-b", "*3-0-1-c"});
    EXPECT_EQ(Collect().size(), 2U);
    // The texts 4 and 5 get the entries of the texts 1 and 3, before and after the entry of text 2.
    Add({"*4-0-1-d", "*5-0-1-e", "*6-0-1-f", "*2-1-2-g"});
    EXPECT_EQ(Collect(), (Texts{"*4-0-1-d", "*2-0-2-bg", "*5-0-1-e", "*6-0-1-f"}));
}

TEST_F(FragmentStoreTest, DropsATextMoreThan30SecondsAfterItsLastPart) {
    Add({"*1-0-3-a", "*2-0-2-b", "*3-0-2-c"});
    clock_.Advance(std::chrono::seconds(20));
    Add({"*1-1-3-d"});
    clock_.Advance(std::chrono::seconds(10));
    store_.Expire(clock_.Now());
    Add({"*2-1-2-e"});
    EXPECT_EQ(Collect(), Texts{"*2-0-2-be"}) << "after exactly 30 seconds the text is still kept";
    clock_.Advance(std::chrono::milliseconds(1));
    store_.Expire(clock_.Now());
    Add({"*1-2-3-f", "*3-1-2-g"});
    EXPECT_EQ(Collect(), Texts{"*1-0-3-adf"});
}

}  // namespace
}  // namespace tallyhorn
