#include "tools/SyslogRun.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <limits>
#include <numeric>
#include <string_view>

#include "tools/Pace.h"

namespace tallyhorn {
namespace {

/// Returns " #000001" for 1.
std::string NumberText(std::uint64_t number) {
    std::array<char, 32> text{};
    const int length =
        std::snprintf(text.data(), text.size(), " #%06llu", static_cast<unsigned long long>(number));
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

SyslogRun::SyslogRun(const SendArguments& arguments, DatagramSender& sender)
    : arguments_(arguments), sender_(sender) {}

SendRun::Outcome SyslogRun::Send(const std::vector<std::string>& texts) {
    const std::vector<std::string_view> views(texts.begin(), texts.end());
    const std::size_t sent = sender_.SendBatch(views);
    counts_.Datagrams += sent;
    counts_.Bytes =
        std::accumulate(views.begin(), views.begin() + static_cast<std::ptrdiff_t>(sent), counts_.Bytes,
                        [](std::uint64_t sum, std::string_view text) { return sum + text.size(); });
    if (sender_.Refused())
        return Outcome::Refused;
    return sent == texts.size() ? Outcome::Sent : Outcome::NotTaken;
}

SendRun::Outcome SyslogRun::SendDemo() {
    // The largest number of datagrams that DatagramSender::SendBatch sends in one system call.
    constexpr std::uint64_t BatchSize = 64;
    const std::uint64_t count = arguments_.Count.value_or(std::numeric_limits<std::uint64_t>::max());
    DemoFeed feed(arguments_.Seed);
    Pace pace(arguments_.Rate);
    Outcome outcome = Outcome::Sent;
    while (outcome == Outcome::Sent && counts_.Datagrams < count && pace.WaitFor(counts_.Datagrams)) {
        const std::uint64_t before = counts_.Datagrams;
        std::vector<DemoText> next =
            NextTexts(feed, pace.Due(counts_.Datagrams, std::min(BatchSize, count - counts_.Datagrams)));
        std::vector<std::string> texts;
        std::transform(next.begin(), next.end(), std::back_inserter(texts),
                       [](DemoText& text) { return std::move(text.Text); });
        outcome = Send(texts);
        for (std::uint64_t i = 0; i < counts_.Datagrams - before; ++i)
            ++counts_.ByType[static_cast<std::size_t>(next[i].Type)];
    }
    return outcome;
}

std::vector<DemoText> SyslogRun::NextTexts(DemoFeed& feed, std::uint64_t count) const {
    std::vector<DemoText> texts(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        texts[i] = feed.NextSyslog();
        if (arguments_.Number)
            texts[i].Text += NumberText(counts_.Datagrams + i + 1);
    }
    return texts;
}

}  // namespace tallyhorn
