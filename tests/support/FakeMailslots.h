#pragma once

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/MailslotTransport.h"

namespace tallyhorn {

/// Mailslots in memory, by name, with failures to order; it must outlive what it makes.
/// For one thread.
class FakeMailslots final : public MailslotTransport {
public:
    /// What one mailslot holds; tests read and set it as they like.
    struct Slot {
        std::size_t MaximumSize = 0;
        std::deque<std::string> Waiting;
        bool InfoFails = false;
        /// Reads that still succeed before one fails.
        std::optional<int> ReadsBeforeFailure;
        /// Told as the next text's size in place of the true one.
        std::optional<std::size_t> NextSize;
        /// Told as the number that waits in place of the true one.
        std::optional<std::size_t> Count;
        /// Writes that still succeed before one fails.
        std::optional<int> WritesBeforeFailure;
    };

    std::map<std::string, Slot, std::less<>> Slots;

    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override {
        const std::optional<std::string_view> name = MailslotNameFromPath(path);
        if (!name || Slots.contains(*name))
            return nullptr;
        Slots[std::string(*name)].MaximumSize = maximumSize;
        return std::make_unique<Server>(*this, std::string(*name));
    }

    std::unique_ptr<MailslotClient> Open(std::string_view path) override {
        const std::optional<std::string_view> name = MailslotNameFromPath(path);
        if (!name || !Slots.contains(*name))
            return nullptr;
        return std::make_unique<Client>(*this, std::string(*name));
    }

private:
    static bool Fails(std::optional<int>& left) { return left && (*left)-- <= 0; }

    class Server final : public MailslotServer {
    public:
        Server(FakeMailslots& owner, std::string name) : owner_(owner), name_(std::move(name)) {}
        ~Server() override { owner_.Slots.erase(name_); }
        Server(const Server&) = delete;
        Server& operator=(const Server&) = delete;

        std::int32_t Handle() const override { return 7; }
        bool GetInfo(MailslotInfo& info) override {
            const Slot& slot = owner_.Slots[name_];
            const std::size_t next = slot.Waiting.empty() ? 0 : slot.Waiting.front().size();
            info = {slot.MaximumSize, slot.NextSize.value_or(next), slot.Count.value_or(slot.Waiting.size())};
            return !slot.InfoFails;
        }
        bool Read(std::span<char> buffer, std::size_t& read) override {
            Slot& slot = owner_.Slots[name_];
            if (slot.Waiting.empty() || slot.Waiting.front().size() > buffer.size() ||
                Fails(slot.ReadsBeforeFailure))
                return false;
            read = slot.Waiting.front().size();
            std::copy(slot.Waiting.front().begin(), slot.Waiting.front().end(), buffer.begin());
            slot.Waiting.pop_front();
            return true;
        }

    private:
        FakeMailslots& owner_;
        const std::string name_;
    };

    class Client final : public MailslotClient {
    public:
        Client(FakeMailslots& owner, std::string name) : owner_(owner), name_(std::move(name)) {}
        std::int32_t Handle() const override { return 8; }
        bool Write(std::string_view text) override {
            const auto slot = owner_.Slots.find(name_);
            if (slot == owner_.Slots.end() || text.size() > slot->second.MaximumSize ||
                Fails(slot->second.WritesBeforeFailure))
                return false;
            slot->second.Waiting.emplace_back(text);
            return true;
        }

    private:
        FakeMailslots& owner_;
        const std::string name_;
    };
};

}  // namespace tallyhorn
