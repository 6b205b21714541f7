#include <gtest/gtest.h>

#include <array>
#include <deque>

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

std::string FrontAndPop(DatagramQueue& queue) {
    std::string text(queue.Front().value_or("none"));
    queue.Pop();
    return text;
}

/// Compares the queue with a std::deque, over many chunks, also after the queue was emptied.
TEST(DatagramQueueTest, ReturnsWhatWasAppended) {
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
        const bool empties = round % 100 == 99;
        for (std::size_t i = empties ? model.size() : random() % 15; i > 0 && !model.empty(); --i) {
            ASSERT_EQ(i % 2 == 0 ? ReadOne(queue) : FrontAndPop(queue), model.front());
            model.pop_front();
        }
        ASSERT_EQ(queue.NextSize(), model.empty() ? 0 : model.front().size());
        ASSERT_EQ(queue.Front().has_value(), !model.empty());
    }
    std::array<char, 8> buffer{};
    std::size_t read = 5;
    EXPECT_FALSE(queue.Read(buffer, read)) << "the queue is empty";
    queue.Append(std::array<std::string_view, 1>{"too long for the buffer"});
    EXPECT_FALSE(queue.Read(buffer, read));
    EXPECT_EQ(read, 5U);
    EXPECT_EQ(ReadOne(queue), "too long for the buffer");
}

TEST(DatagramQueueTest, AtItsLimitTheAppendingThreadWaitsForAReaderOrForStop) {
    constexpr std::size_t Limit = 4 * DatagramQueue::ChunkSize;
    constexpr std::size_t Length = 400;
    DatagramQueue queue(Limit);
    std::jthread appending([&] {
        for (std::size_t i = 0; queue.WaitForRoom(); ++i) {
            std::string text = std::to_string(i);
            text.resize(Length, '.');
            queue.Append(std::array<std::string_view, 1>{text});
        }
    });
    EXPECT_TRUE(DatagramQueue(0).HasRoom()) << "the smallest limit is two chunks";
    std::size_t most = 0;
    for (std::size_t i = 0; i <= 60'000; ++i) {
        ASSERT_TRUE(i % 30'000 != 0 || Eventually([&] { return !queue.HasRoom(); })) << i;
        while (queue.Count() == 0)
            std::this_thread::yield();
        most = std::max(most, queue.Count() * Length);
        ASSERT_EQ(std::stoul(ReadOne(queue)), i);
    }
    EXPECT_LE(most, Limit);
    EXPECT_GT(most, Limit / 2);
    EXPECT_TRUE(Eventually([&] { return !queue.HasRoom(); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    queue.Stop();  // the test hangs if the thread keeps waiting
}

}  // namespace
}  // namespace tallyhorn
