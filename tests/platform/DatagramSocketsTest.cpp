#include <gtest/gtest.h>

#include <semaphore>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using namespace std::chrono_literals;

/// Sends to a receiver over the loopback interface and reads when the receiver calls `wake`.
class DatagramSocketsTest : public testing::Test {
protected:
    std::unique_ptr<DatagramReceiver> Listen(std::int32_t port) {
        return sockets_->Listen(port, [this] { woken_.release(); });
    }
    auto Open(const std::string& host = "127.0.0.1") { return sockets_->Open(host, receiver_->Port()); }
    /// Returns the next datagram.  Waits for wakes until there is one; returns "timeout" if none arrives.
    std::string Await() {
        std::optional<std::string_view> next = receiver_->Next();
        while (!next && woken_.try_acquire_for(10s))
            next = receiver_->Next();
        return std::string(next.value_or("timeout"));
    }
    std::uint64_t LostBySystem() const { return receiver_->Losses().BySystem.value_or(0); }

    const std::unique_ptr<DatagramSockets> sockets_ = MakeDatagramSockets();
    std::counting_semaphore<> woken_{0};
    std::unique_ptr<DatagramReceiver> receiver_ = Listen(0);
};

TEST_F(DatagramSocketsTest, ReceivesEverySizeOverIPv4AndIPv6) {
    for (const char* const host : {"127.0.0.1", "::1", "localhost"}) {
        const std::unique_ptr<DatagramSender> sender = Open(host);
        if (sender == nullptr && host == std::string_view("::1"))
            continue;  // this machine has no IPv6
        ASSERT_NE(sender, nullptr) << host;
        for (const std::size_t size : {0U, 1U, 2U, 300U, 1472U, 1473U, 65506U, 65536U, 65507U}) {
            std::string text;
            while (text.size() < size)
                text += static_cast<char>(text.size() % 256 + text.size() / 256);
            ASSERT_EQ(sender->Send(text), size <= 65507) << host << ' ' << size;
            ASSERT_TRUE(size > 65507 || Await() == text) << host << ' ' << size;
        }
    }
}

TEST_F(DatagramSocketsTest, SendsABatchInOrderUpToTheFirstTextThatIsTooLong) {
    const std::unique_ptr<DatagramSender> sender = Open();
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < 150; ++i)
        texts.push_back(std::to_string(i) + std::string(i % 3 == 0 ? 0 : 200, static_cast<char>(i)));
    std::vector<std::string_view> batch(texts.begin(), texts.end());
    const std::string tooLong(65536, 'x');
    for (const std::size_t sent : {150U, 100U, 0U}) {
        EXPECT_EQ(sender->SendBatch(batch), sent);
        for (std::size_t i = 0; i < sent; ++i)
            ASSERT_EQ(Await(), texts[i]);
        batch[sent == 150 ? 100 : 0] = tooLong;
    }
    EXPECT_EQ(sender->SendBatch({}), 0U);
    EXPECT_EQ(receiver_->Next(), std::nullopt);
}

TEST_F(DatagramSocketsTest, RefusesInvalidPortsAndHosts) {
    for (const std::int32_t port : {-1, 65536, 65536 + 50'000, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(Listen(port), nullptr) << port;
        EXPECT_EQ(sockets_->Open("127.0.0.1", port), nullptr) << port;
    }
    EXPECT_EQ(sockets_->Open("127.0.0.1", 0), nullptr);
    EXPECT_EQ(sockets_->Open("no such host", 514), nullptr);
    EXPECT_EQ(sockets_->Open("127.0.0.1.1", 514), nullptr);
}

TEST_F(DatagramSocketsTest, ReportsThatNobodyListens) {
    const std::unique_ptr<DatagramSender> sender = Open();
    ASSERT_TRUE(sender->Send("heard"));
    EXPECT_EQ(Await(), "heard");
    EXPECT_FALSE(sender->Refused());
    receiver_.reset();
    sender->Send("unheard");
    EXPECT_TRUE(Eventually([&] { return sender->Refused(); }));
    EXPECT_TRUE(sender->Refused()) << "the refusal stays";
}

TEST_F(DatagramSocketsTest, ReportsTheLossesOfTheSystem) {
    if (!receiver_->Losses().BySystem)
        GTEST_SKIP() << "this system does not report losses";
    // Large datagrams, sent faster than any thread can receive them, fill the receive buffer.
    const std::unique_ptr<DatagramSender> sender = Open();
    const std::string large(60'000, 'x');
    const std::vector<std::string_view> batch(500, large);
    std::uint64_t sent = 0;
    while (LostBySystem() == 0 && sent < 100'000)
        sent += sender->SendBatch(batch);
    EXPECT_GT(LostBySystem(), 0U) << sent;
    std::uint64_t taken = 0;
    EXPECT_TRUE(Eventually([&] {
        while (receiver_->Next())
            ++taken;
        return taken + LostBySystem() + receiver_->Losses().NoRoom == sent;
    })) << sent
        << " sent, " << taken << " taken, " << LostBySystem() << " lost";
    const std::uint64_t lost = LostBySystem();
    receiver_->Stop();
    EXPECT_EQ(LostBySystem(), lost) << "the count stays when the socket is closed";
}

TEST_F(DatagramSocketsTest, APortIsFreeOnlyAfterStopWhichKeepsWhatArrived) {
    // So few that the smallest receive buffer holds all of them while the pump thread sleeps.
    constexpr std::size_t Texts = 100;
    for (int round = 0; round < 20; ++round) {
        const std::uint16_t port = receiver_->Port();
        const std::unique_ptr<DatagramSender> sender = Open();
        EXPECT_EQ(MakeDatagramSockets()->Listen(port, [] {}), nullptr) << "the port has a receiver";
        ASSERT_TRUE(sender->Send("0"));
        EXPECT_EQ(Await(), "0");
        for (std::size_t i = 1; i <= Texts; ++i)
            ASSERT_TRUE(sender->Send(std::to_string(i)));
        receiver_->Stop();
        receiver_->Stop();
        EXPECT_EQ(receiver_->Port(), port);
        std::unique_ptr<DatagramReceiver> next = Listen(port);
        ASSERT_NE(next, nullptr) << "the port is free again";
        EXPECT_TRUE(receiver_->HasWaiting());
        for (std::size_t i = 1; i <= Texts; ++i)
            ASSERT_EQ(receiver_->Next(), std::to_string(i)) << "in round " << round;
        EXPECT_EQ(receiver_->Next(), std::nullopt);
        EXPECT_EQ(receiver_->Losses().NoRoom + LostBySystem(), 0U);
        receiver_ = std::move(next);
    }
}

TEST_F(DatagramSocketsTest, EndsAtOnceDuringAFlood) {
    const std::uint16_t port = receiver_->Port();
    std::jthread flood([&](const std::stop_token& stop) {
        for (const auto sender = sockets_->Open("127.0.0.1", port); !stop.stop_requested();)
            sender->Send("text");
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_NE(Await(), "timeout") << i;
        const auto start = std::chrono::steady_clock::now();
        receiver_.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
        receiver_ = Listen(port);
        ASSERT_NE(receiver_, nullptr) << "the port is free again";
    }
}

}  // namespace
}  // namespace tallyhorn
