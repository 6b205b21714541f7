#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

#include "platform/DatagramInbox.h"

namespace tallyhorn {
namespace {

constexpr std::size_t Limit = std::size_t{8} << 20U;

void PutOne(DatagramInbox& inbox, const std::string& text) {
    inbox.Put(std::array{std::string_view(text)});
}

TEST(DatagramInboxTest, WakesOnceUntilTheReaderFindsNothing) {
    int wakes = 0;
    DatagramInbox inbox(Limit, [&] { ++wakes; });
    EXPECT_FALSE(inbox.HasWaiting());
    // A Next that returns nothing and a HasWaiting that returns false both allow another wake.
    for (int round = 0; round < 4; ++round) {
        PutOne(inbox, "a");
        EXPECT_EQ(wakes, round + 1);
        EXPECT_EQ(inbox.Next(), "a");
        PutOne(inbox, "");
        EXPECT_TRUE(inbox.HasWaiting());
        EXPECT_EQ(inbox.Next(), "");
        EXPECT_EQ(wakes, round + 1) << "the reader has not found the inbox empty";
        EXPECT_FALSE(round % 2 == 0 ? inbox.Next().has_value() : inbox.HasWaiting());
        inbox.Put({});
        EXPECT_EQ(wakes, round + 1) << "nothing has arrived";
    }
}

TEST(DatagramInboxTest, AViewIsValidUntilTheNextCall) {
    const std::string large(60'000, 'x'), other(60'000, 'y');
    const std::size_t textsOfAChunk = DatagramQueue::ChunkSize / (large.size() + sizeof(std::uint32_t));
    DatagramInbox inbox(8 * DatagramQueue::ChunkSize, [] {});
    for (std::size_t i = 0; i < 2 * textsOfAChunk; ++i)
        PutOne(inbox, large);
    for (std::size_t i = 1; i <= 2 * textsOfAChunk; ++i) {
        const std::string_view text = inbox.Next().value_or("none");
        // If Next released the chunk of its last text too early, these texts would overwrite that text.
        for (std::size_t put = 0; i % textsOfAChunk == 0 && put < textsOfAChunk; ++put)
            PutOne(inbox, other);
        ASSERT_TRUE(text == large) << i;
    }
    EXPECT_TRUE(inbox.Next() == other);
}

TEST(DatagramInboxTest, CountsWhatItHasNoRoomFor) {
    DatagramInbox inbox(Limit, [] {});
    const std::string large(60'000, 'x');
    const std::vector<std::string_view> batch(10, large);
    std::uint64_t lost = 0;
    for (int round = 0; round < 2; ++round) {
        std::size_t put = 0;
        for (; inbox.NoRoom() < lost + 25 && put < 1000; put += batch.size())
            inbox.Put(batch);
        EXPECT_GE(inbox.NoRoom(), lost + 25);
        std::size_t taken = 0;
        while (inbox.Next())
            ++taken;
        EXPECT_EQ(taken + inbox.NoRoom() - lost, put);
        EXPECT_GT(taken * large.size(), Limit / 2);
        EXPECT_LE(taken * large.size(), Limit);
        lost = inbox.NoRoom();
    }
}

/// Waits until `done` returns true, without sleeping: a thread that sleeps misses the few nanoseconds that
/// the test below must hit.
template <typename Condition>
bool Soon(Condition done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (std::size_t i = 1; !done(); ++i) {
        if (i % 1000 == 0)
            std::this_thread::yield();
        if (i % 100'000 == 0 && std::chrono::steady_clock::now() > end)
            return false;
    }
    return true;
}

TEST(DatagramInboxTest, NoWakeIsLostAndNeverAreTwoPending) {
    constexpr std::size_t Texts = 500'000;
    std::atomic<int> pending = 0, most = 0;
    std::atomic<std::size_t> taken = 0;
    DatagramInbox inbox(Limit, [&] { most = std::max(most.load(), ++pending); });
    std::jthread pump([&] {
        for (std::size_t i = 0; i < Texts; ++i) {
            PutOne(inbox, std::to_string(i));
            // Varies when the next text arrives while the reader is about to find the inbox empty.
            for (std::size_t spin = i % 97; spin > 0; --spin)
                std::atomic_signal_fence(std::memory_order_seq_cst);
            // Waits now and then, so that no later text can wake a reader whose wake was lost.
            if (i % 50 == 0 && !Soon([&] { return taken == i + 1; }))
                return;
        }
    });
    while (taken < Texts) {
        ASSERT_TRUE(Soon([&] { return pending > 0; })) << "a wake was lost after " << taken;
        --pending;
        for (; const std::optional<std::string_view> text = inbox.Next(); ++taken)
            ASSERT_EQ(*text, std::to_string(taken));
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(inbox.NoRoom(), 0U);
}

}  // namespace
}  // namespace tallyhorn
