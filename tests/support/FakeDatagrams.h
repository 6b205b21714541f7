#pragma once

#include <deque>
#include <map>
#include <set>
#include <utility>

#include "platform/DatagramSockets.h"

namespace tallyhorn {

/// UDP ports in memory, with failures on request.  Must outlive the objects that it makes.  Not thread-safe:
/// Arrive calls `wake` itself.
class FakeDatagrams final : public DatagramSockets {
public:
    /// The state of a bound port, which tests may read and change.
    struct Endpoint {
        std::deque<std::string> Waiting;
        DatagramLosses Losses;
        std::function<void()> Wake;
        bool Awake = false;  ///< the reader was woken and has not found the port empty since
    };

    std::map<std::uint16_t, Endpoint> Bound;
    /// The ports that another program has bound.
    std::set<std::int32_t> Taken;
    /// The next port to choose for port 0.
    std::uint16_t NextChosen = 49152;

    /// Delivers a datagram.  Returns false if nobody listens at the port.
    bool Arrive(std::uint16_t port, std::string_view text) {
        const auto bound = Bound.find(port);
        if (bound == Bound.end())
            return false;
        Endpoint& endpoint = bound->second;
        endpoint.Waiting.emplace_back(text);
        if (!std::exchange(endpoint.Awake, true))
            endpoint.Wake();
        return true;
    }

    std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) override {
        if (!IsUdpPort(port) || Taken.contains(port))
            return nullptr;
        const std::uint16_t bound = port == 0 ? NextChosen++ : static_cast<std::uint16_t>(port);
        if (!Bound.try_emplace(bound).second)
            return nullptr;
        Bound[bound].Wake = std::move(wake);
        return std::make_unique<Receiver>(*this, bound);
    }

    /// Every host means this machine.
    std::unique_ptr<DatagramSender> Open(const std::string& /*host*/, std::int32_t port) override {
        if (!IsUdpPort(port) || port == 0)
            return nullptr;
        return std::make_unique<Sender>(*this, static_cast<std::uint16_t>(port));
    }

private:
    class Receiver final : public DatagramReceiver {
    public:
        Receiver(FakeDatagrams& owner, std::uint16_t port) : owner_(owner), port_(port) {}
        ~Receiver() override { Receiver::Stop(); }
        Receiver(const Receiver&) = delete;
        Receiver& operator=(const Receiver&) = delete;

        std::uint16_t Port() const override { return port_; }
        void Stop() override {
            if (std::exchange(stopped_, true))
                return;
            left_ = std::move(owner_.Bound[port_]);
            owner_.Bound.erase(port_);
        }
        std::optional<std::string_view> Next() override {
            if (!HasWaiting())
                return std::nullopt;
            Endpoint& endpoint = State();
            taken_ = std::move(endpoint.Waiting.front());
            endpoint.Waiting.pop_front();
            return taken_;
        }
        bool HasWaiting() override {
            Endpoint& endpoint = State();
            // After a result of false, the next arrival calls wake again.
            endpoint.Awake = endpoint.Awake && !endpoint.Waiting.empty();
            return !endpoint.Waiting.empty();
        }
        DatagramLosses Losses() const override { return State().Losses; }

    private:
        Endpoint& State() const { return stopped_ ? left_ : owner_.Bound[port_]; }

        FakeDatagrams& owner_;
        const std::uint16_t port_;
        bool stopped_ = false;
        mutable Endpoint left_;
        std::string taken_;
    };

    class Sender final : public DatagramSender {
    public:
        Sender(FakeDatagrams& owner, std::uint16_t port) : owner_(owner), port_(port) {}
        std::size_t SendBatch(std::span<const std::string_view> texts) override {
            std::size_t sent = 0;
            for (; sent < texts.size() && texts[sent].size() <= LargestSize; ++sent)
                refused_ = !owner_.Arrive(port_, texts[sent]) || refused_;
            return sent;
        }
        bool Refused() override { return refused_; }

    private:
        FakeDatagrams& owner_;
        const std::uint16_t port_;
        bool refused_ = false;
    };
};

}  // namespace tallyhorn
