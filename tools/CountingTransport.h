#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/MailslotTransport.h"

namespace tallyhorn {

/// Forwards every call to another transport, and counts the datagrams and bytes that its clients have
/// written. Both transports must outlive the clients.
class CountingTransport final : public MailslotTransport {
public:
    explicit CountingTransport(MailslotTransport& inner) : inner_(inner) {}

    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override {
        return inner_.Create(path, maximumSize);
    }
    std::unique_ptr<MailslotClient> Open(std::string_view path) override {
        std::unique_ptr<MailslotClient> client = inner_.Open(path);
        return client == nullptr ? nullptr : std::make_unique<Client>(*this, std::move(client));
    }

    std::uint64_t Datagrams() const { return datagrams_; }
    std::uint64_t Bytes() const { return bytes_; }

private:
    class Client final : public MailslotClient {
    public:
        Client(CountingTransport& owner, std::unique_ptr<MailslotClient> inner)
            : owner_(owner), inner_(std::move(inner)) {}
        std::int32_t Handle() const override { return inner_->Handle(); }
        bool Write(std::string_view text) override {
            if (!inner_->Write(text))
                return false;
            ++owner_.datagrams_;
            owner_.bytes_ += text.size();
            return true;
        }

    private:
        CountingTransport& owner_;
        const std::unique_ptr<MailslotClient> inner_;
    };

    MailslotTransport& inner_;
    std::uint64_t datagrams_ = 0;
    std::uint64_t bytes_ = 0;
};

}  // namespace tallyhorn
