#include "tools/SyslogRun.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>
#include <numeric>
#include <string_view>

#include "tools/Pace.h"

namespace tallyhorn {
namespace {

/// " #000001" for the first.
std::string NumberText(std::uint64_t number) {
    std::array<char, 32> text{};
    const int length =
        std::snprintf(text.data(), text.size(), " #%06llu", static_cast<unsigned long long>(number));
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

SyslogRun::SyslogRun(const SendArguments& arguments, DatagramSender& sender)
    : arguments_(arguments), sender_(sender) {}

SyslogRun::Outcome SyslogRun::Send(const std::vector<std::string>& texts) {
    const std::vector<std::string_view> views(texts.begin(), texts.end());
    const std::size_t sent = sender_.SendBatch(views);
    datagrams_ += sent;
    bytes_ = std::accumulate(views.begin(), views.begin() + static_cast<std::ptrdiff_t>(sent), bytes_,
                             [](std::uint64_t sum, std::string_view text) { return sum + text.size(); });
    if (sender_.Refused())
        return Outcome::Refused;
    return sent == texts.size() ? Outcome::Sent : Outcome::NotTaken;
}

SyslogRun::Outcome SyslogRun::SendDemo() {
    // One system call's worth.
    constexpr std::uint64_t BatchSize = 64;
    const std::uint64_t count = arguments_.Count.value_or(std::numeric_limits<std::uint64_t>::max());
    DemoFeed feed(arguments_.Seed);
    Pace pace(arguments_.Rate);
    Outcome outcome = Outcome::Sent;
    while (outcome == Outcome::Sent && datagrams_ < count && pace.WaitFor(datagrams_)) {
        const std::uint64_t before = datagrams_;
        std::vector<DemoText> next =
            NextTexts(feed, pace.Due(datagrams_, std::min(BatchSize, count - datagrams_)));
        std::vector<std::string> texts;
        std::transform(next.begin(), next.end(), std::back_inserter(texts),
                       [](DemoText& text) { return std::move(text.Text); });
        outcome = Send(texts);
        for (std::uint64_t i = 0; i < datagrams_ - before; ++i)
            ++byType_[static_cast<std::size_t>(next[i].Type)];
    }
    return outcome;
}

std::vector<DemoText> SyslogRun::NextTexts(DemoFeed& feed, std::uint64_t count) const {
    std::vector<DemoText> texts(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        texts[i] = feed.NextSyslog();
        if (arguments_.Number)
            texts[i].Text += NumberText(datagrams_ + i + 1);
    }
    return texts;
}

}  // namespace tallyhorn
