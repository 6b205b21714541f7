#pragma once

#include <algorithm>
#include <deque>
#include <map>

#include "platform/MailslotTransport.h"

namespace tallyhorn {

/// Mailslots in memory, with failures on request.  Must outlive the objects that it makes.  Not thread-safe.
class FakeMailslots final : public MailslotTransport {
public:
    /// The state of one mailslot, which tests may read and change.
    struct Mailslot {
        std::size_t MaximumSize = 0;
        std::deque<std::string> Waiting;
        bool InfoFails = false;
        /// The number of reads that succeed before one fails.
        std::optional<int> ReadsBeforeFailure;
        /// Reported as the size of the next text in place of the true one.
        std::optional<std::size_t> NextSize;
        /// Reported as the number of waiting texts in place of the true one.
        std::optional<std::size_t> Count;
        /// The number of writes that succeed before one fails.
        std::optional<int> WritesBeforeFailure;
    };

    std::map<std::string, Mailslot, std::less<>> ByName;

    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override {
        const std::optional<std::string_view> name = MailslotNameFromPath(path);
        if (!name || ByName.contains(*name))
            return nullptr;
        ByName[std::string(*name)].MaximumSize = maximumSize;
        return std::make_unique<Server>(*this, std::string(*name));
    }

    std::unique_ptr<MailslotClient> Open(std::string_view path) override {
        const std::optional<std::string_view> name = MailslotNameFromPath(path);
        if (!name || !ByName.contains(*name))
            return nullptr;
        return std::make_unique<Client>(*this, std::string(*name));
    }

private:
    static bool Fails(std::optional<int>& left) { return left && (*left)-- <= 0; }

    class Server final : public MailslotServer {
    public:
        Server(FakeMailslots& owner, std::string name) : owner_(owner), name_(std::move(name)) {}
        ~Server() override { owner_.ByName.erase(name_); }
        Server(const Server&) = delete;
        Server& operator=(const Server&) = delete;

        std::int32_t Handle() const override { return 7; }
        bool GetInfo(MailslotInfo& info) override {
            const Mailslot& mailslot = owner_.ByName[name_];
            const std::size_t next = mailslot.Waiting.empty() ? 0 : mailslot.Waiting.front().size();
            info = {mailslot.MaximumSize, mailslot.NextSize.value_or(next),
                    mailslot.Count.value_or(mailslot.Waiting.size())};
            return !mailslot.InfoFails;
        }
        bool Read(std::span<char> buffer, std::size_t& read) override {
            Mailslot& mailslot = owner_.ByName[name_];
            if (mailslot.Waiting.empty() || mailslot.Waiting.front().size() > buffer.size() ||
                Fails(mailslot.ReadsBeforeFailure))
                return false;
            read = mailslot.Waiting.front().size();
            std::copy(mailslot.Waiting.front().begin(), mailslot.Waiting.front().end(), buffer.begin());
            mailslot.Waiting.pop_front();
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
            const auto mailslot = owner_.ByName.find(name_);
            if (mailslot == owner_.ByName.end() || text.size() > mailslot->second.MaximumSize ||
                Fails(mailslot->second.WritesBeforeFailure))
                return false;
            mailslot->second.Waiting.emplace_back(text);
            return true;
        }

    private:
        FakeMailslots& owner_;
        const std::string name_;
    };
};

}  // namespace tallyhorn
