#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <semaphore>
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
    DatagramInbox inbox(0, [] {});
    const std::string large(60'000, 'x');
    std::string_view last;
    std::size_t put = 0;
    for (; inbox.NoRoom() == 0; ++put)
        PutOne(inbox, large);
    for (std::size_t i = 0; i + 1 < put; ++i) {
        last = inbox.Next().value_or("none");
        // Where the reader is done with a chunk, new texts would be written over it.
        PutOne(inbox, std::string(60'000, 'y'));
        PutOne(inbox, std::string(60'000, 'y'));
        ASSERT_EQ(last, large) << i;
    }
    EXPECT_EQ(inbox.Next().value_or("none").front(), 'y');
}

TEST(DatagramInboxTest, CountsWhatItHasNoRoomFor) {
    int wakes = 0;
    DatagramInbox inbox(Limit, [&] { ++wakes; });
    const std::string large(60'000, 'x');
    const std::vector<std::string_view> batch(10, large);
    std::size_t put = 0;
    for (; inbox.NoRoom() < 25; put += batch.size())
        inbox.Put(batch);
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

TEST(DatagramInboxTest, NoWakeIsLostAndNeverTwoAreOnTheirWay) {
    constexpr std::size_t Texts = 300'000;
    std::counting_semaphore<> woken(0);
    std::atomic<int> onTheirWay = 0;
    std::atomic<int> most = 0;
    DatagramInbox inbox(Limit, [&] {
        most = std::max(most.load(), ++onTheirWay);
        woken.release();
    });
    std::jthread pump([&] {
        for (std::size_t i = 0; i < Texts; ++i) {
            PutOne(inbox, std::to_string(i));
            // Lets the reader find nothing again and again, at ever other moments.
            for (std::size_t spin = i % 97; spin > 0; --spin)
                std::atomic_signal_fence(std::memory_order_seq_cst);
            if (i % 1000 == 0)
                std::this_thread::sleep_for(1ms);
        }
    });
    std::size_t taken = 0;
    std::size_t rests = 0;
    while (taken < Texts) {
        ASSERT_TRUE(woken.try_acquire_for(30s)) << "a wake is lost after " << taken;
        --onTheirWay;
        while (const std::optional<std::string_view> text = inbox.Next())
            ASSERT_EQ(*text, std::to_string(taken++));
        ++rests;
    }
    EXPECT_EQ(most, 1);
    EXPECT_GT(rests, 100U) << "too few to show anything";
    EXPECT_EQ(inbox.NoRoom(), 0U);
}

}  // namespace
}  // namespace tallyhorn
