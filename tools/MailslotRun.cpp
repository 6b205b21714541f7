#include "tools/MailslotRun.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/CommandLineProgram.h"
#include "tools/Pace.h"

namespace tallyhorn {

MailslotRun::MailslotRun(const SendArguments& arguments, MailslotTransport& transport, const Clock& clock)
    : arguments_(arguments), counting_(transport), mailslot_(counting_, clock) {
    counts_.Texts = 0;
}

SendRun::Outcome MailslotRun::Send(const std::vector<std::string>& texts) {
    if (arguments_.Mode == SendMode::Raw)
        return SendRaw(texts);
    if (!mailslot_.InitializeMailslot(arguments_.Mailslot, false))
        return Outcome::Refused;
    return Count(std::all_of(texts.begin(), texts.end(), [this](const auto& text) { return SendOne(text); }));
}

SendRun::Outcome MailslotRun::SendDemo() {
    if (!mailslot_.InitializeMailslot(arguments_.Mailslot, false))
        return Outcome::Refused;
    DemoFeed feed(arguments_.Seed);
    Pace pace(arguments_.Rate);
    while ((!arguments_.Count || *counts_.Texts < *arguments_.Count) && pace.WaitFor(*counts_.Texts)) {
        DemoText next = feed.Next();
        // Ctrl+C also interrupts a write that waits for room in the mailslot; that is no failure.
        if (!SendOne(std::move(next.Text)))
            return Count(EndRequested());
        ++counts_.ByType[static_cast<std::size_t>(next.Type)];
    }
    return Count(true);
}

SendRun::Outcome MailslotRun::SendRaw(const std::vector<std::string>& datagrams) {
    const std::unique_ptr<MailslotClient> client =
        counting_.Open(std::string(MailslotPrefix) + arguments_.Mailslot);
    if (client == nullptr)
        return Outcome::Refused;
    const bool taken = std::all_of(datagrams.begin(), datagrams.end(), [&](const std::string& datagram) {
        return client->Write(std::string_view(datagram.c_str(), datagram.size() + 1));
    });
    counts_.Texts = counting_.Datagrams();
    return Count(taken);
}

bool MailslotRun::SendOne(std::string text) {
    constexpr std::size_t LongestWithNul = cvbMailslot::MaximumMessageSize - 2;
    if (text.size() <= LongestWithNul)
        text += '\0';
    try {
        if (!mailslot_.SendMessage(text))
            return false;
    } catch (const MailslotWriteError&) {
        return false;
    }
    ++*counts_.Texts;
    return true;
}

SendRun::Outcome MailslotRun::Count(bool taken) {
    counts_.Datagrams = counting_.Datagrams();
    counts_.Bytes = counting_.Bytes();
    return taken ? Outcome::Sent : Outcome::NotTaken;
}

}  // namespace tallyhorn
