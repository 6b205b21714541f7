#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "platform/DatagramInbox.h"

namespace tallyhorn {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t Limit = std::size_t{8} << 20U;

void PutOne(DatagramInbox& inbox, const std::string& text) {
    inbox.Put(std::array{std::string_view(text)});
}

TEST(DatagramInboxTest, WakesOnceUntilTheReaderFindsNothing) {
    int wakes = 0;
    DatagramInbox inbox(Limit, [&] { ++wakes; });
    EXPECT_FALSE(inbox.HasWaiting());
    PutOne(inbox, "a");
    PutOne(inbox, "");
    EXPECT_EQ(wakes, 1);
    EXPECT_EQ(inbox.Next(), "a");
    PutOne(inbox, "c");
    EXPECT_TRUE(inbox.HasWaiting());
    EXPECT_EQ(inbox.Next(), "");
    EXPECT_EQ(inbox.Next(), "c");
    PutOne(inbox, "d");
    EXPECT_EQ(wakes, 1) << "the reader has not found nothing yet";
    EXPECT_EQ(inbox.Next(), "d");
    EXPECT_EQ(inbox.Next(), std::nullopt);
    PutOne(inbox, "e");
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(inbox.Next(), "e");
    EXPECT_FALSE(inbox.HasWaiting()) << "what Next has given does not wait";
    PutOne(inbox, "f");
    EXPECT_EQ(wakes, 3) << "HasWaiting lets the reader rest as well";
    inbox.Put({});
    EXPECT_EQ(inbox.Next(), "f");
    EXPECT_EQ(inbox.Next(), std::nullopt);
    inbox.Put({});
    EXPECT_EQ(wakes, 3) << "nothing has come";
}

TEST(DatagramInboxTest, WhatNextGaveStaysUntilTheNextCall) {
    const std::string large(60'000, 'x');
    const std::string other(60'000, 'y');
    const std::size_t textsOfAChunk = DatagramQueue::ChunkSize / (large.size() + sizeof(std::uint32_t));
    DatagramInbox inbox(8 * DatagramQueue::ChunkSize, [] {});
    for (std::size_t i = 0; i < 2 * textsOfAChunk; ++i)
        PutOne(inbox, large);
    for (std::size_t i = 1; i <= 2 * textsOfAChunk; ++i) {
        const std::string_view text = inbox.Next().value_or("none");
        // The last one of a chunk would be written over, were the chunk thought read.
        for (std::size_t put = 0; i % textsOfAChunk == 0 && put < textsOfAChunk; ++put)
            PutOne(inbox, other);
        ASSERT_TRUE(text == large) << i;
    }
    EXPECT_TRUE(inbox.Next() == other);
    EXPECT_EQ(inbox.NoRoom(), 0U);
}

TEST(DatagramInboxTest, CountsWhatItHasNoRoomFor) {
    int wakes = 0;
    DatagramInbox inbox(Limit, [&] { ++wakes; });
    const std::string large(60'000, 'x');
    const std::vector<std::string_view> batch(10, large);
    std::size_t put = 0;
    for (; inbox.NoRoom() < 25 && put < 1000; put += batch.size())
        inbox.Put(batch);
    EXPECT_GE(inbox.NoRoom(), 25U);
    EXPECT_EQ(wakes, 1);
    std::size_t taken = 0;
    while (inbox.Next())
        ++taken;
    EXPECT_EQ(taken + inbox.NoRoom(), put);
    EXPECT_GT(taken * large.size(), Limit / 2);
    EXPECT_LE(taken * large.size(), Limit);
    PutOne(inbox, "there is room again");
    EXPECT_EQ(inbox.Next(), "there is room again");
    EXPECT_EQ(wakes, 2);
}

/// Waits actively: the moments that matter are some nanoseconds long, and a thread that sleeps misses them.
template <typename Condition>
bool Soon(Condition done) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    for (std::size_t i = 1; !done(); ++i) {
        if (i % 1000 == 0)
            std::this_thread::yield();
        if (i % 100'000 == 0 && std::chrono::steady_clock::now() > end)
            return false;
    }
    return true;
}

TEST(DatagramInboxTest, NoWakeIsLostAndNeverTwoAreOnTheirWay) {
    constexpr std::size_t Texts = 500'000;
    std::atomic<int> onTheirWay = 0;
    std::atomic<int> most = 0;
    std::atomic<std::size_t> taken = 0;
    DatagramInbox inbox(Limit, [&] { most = std::max(most.load(), ++onTheirWay); });
    std::jthread pump([&] {
        for (std::size_t i = 0; i < Texts; ++i) {
            PutOne(inbox, std::to_string(i));
            // Meets the reader at ever other moments of its coming to rest.
            for (std::size_t spin = i % 97; spin > 0; --spin)
                std::atomic_signal_fence(std::memory_order_seq_cst);
            // Now and then nothing follows that would wake the reader where this one failed to.
            if (i % 50 == 0 && !Soon([&] { return taken == i + 1; }))
                return;
        }
    });
    while (taken < Texts) {
        ASSERT_TRUE(Soon([&] { return onTheirWay > 0; })) << "a wake is lost after " << taken;
        --onTheirWay;
        while (const std::optional<std::string_view> text = inbox.Next()) {
            ASSERT_EQ(*text, std::to_string(taken));
            ++taken;
        }
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(inbox.NoRoom(), 0U);
}

}  // namespace
}  // namespace tallyhorn
