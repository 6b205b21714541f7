#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/DatagramQueue.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

std::string ReadOne(DatagramQueue& queue) {
    std::string text(queue.NextSize(), '\0');
    std::size_t read = 0;
    EXPECT_TRUE(queue.Read(text, read));
    return text;
}

/// The same without a copy of the queue's making.
std::string TakeOne(DatagramQueue& queue) {
    EXPECT_TRUE(queue.Front());
    std::string text(queue.Front().value_or("none"));
    queue.Pop();
    return text;
}

TEST(DatagramQueueTest, GivesBackWhatWasPutInAcrossChunks) {
    std::mt19937 random(7);
    DatagramQueue queue;
    std::deque<std::string> model;
    for (int round = 0; round < 400; ++round) {
        std::vector<std::string> texts(random() % 20);
        for (std::string& text : texts)
            text.assign(random() % 3 == 0 ? random() % 60000 : random() % 400, static_cast<char>(random()));
        queue.Append(std::vector<std::string_view>(texts.begin(), texts.end()));
        model.insert(model.end(), texts.begin(), texts.end());
        ASSERT_EQ(queue.Count(), model.size());
        // Lags behind for a while and catches up again.
        for (std::size_t i = random() % (round % 100 < 80 ? 15 : 40); i > 0 && !model.empty(); --i) {
            ASSERT_EQ(i % 2 == 0 ? ReadOne(queue) : TakeOne(queue), model.front());
            model.pop_front();
        }
    }
    for (; !model.empty(); model.pop_front())
        ASSERT_EQ(ReadOne(queue), model.front());
    EXPECT_EQ(queue.NextSize(), 0U);
    EXPECT_FALSE(queue.Front());
    std::array<char, 8> buffer{};
    std::size_t read = 0;
    EXPECT_FALSE(queue.Read(buffer, read));
}

TEST(DatagramQueueTest, AtItsLimitTheAppendingSideWaitsAndNothingIsLost) {
    constexpr std::size_t Limit = 4 * DatagramQueue::ChunkSize;
    constexpr std::size_t Texts = 60'000;
    constexpr std::size_t Length = 400;
    DatagramQueue queue(Limit);
    std::jthread appending([&] {
        for (std::size_t i = 0; i < Texts && queue.WaitForRoom(); ++i) {
            std::string text = std::to_string(i);
            text.resize(Length, '.');
            const std::array<std::string_view, 1> one{text};
            queue.Append(one);
        }
    });
    std::size_t most = 0;
    for (std::size_t i = 0; i < Texts; ++i) {
        if (i % 30'000 == 0) {
            ASSERT_TRUE(Eventually([&] { return !queue.HasRoom(); }));
        }
        while (queue.Count() == 0)
            std::this_thread::yield();
        most = std::max(most, queue.Count() * Length);
        ASSERT_EQ(std::stoul(ReadOne(queue)), i);
    }
    EXPECT_LE(most, Limit);
    EXPECT_GT(most, Limit / 2);
    EXPECT_EQ(queue.Count(), 0U);
}

TEST(DatagramQueueTest, StopEndsTheWaitForRoom) {
    DatagramQueue queue(0);  // the least is two chunks
    const std::string large(60'000, 'x');
    while (queue.HasRoom())
        queue.Append(std::array<std::string_view, 1>{large});
    std::jthread waiting([&] { EXPECT_FALSE(queue.WaitForRoom()); });
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    queue.Stop();
}

}  // namespace
}  // namespace tallyhorn
