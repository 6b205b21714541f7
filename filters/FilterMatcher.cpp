#include "filters/FilterMatcher.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "filters/FilterDates.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::uint32_t KnownTypes =
    FilterInformation | FilterWarning | FilterError | FilterFailureAudit | FilterSuccessAudit;
/// The bit for every type text that names none of the five event types.
constexpr std::uint32_t OtherType = 32;

/// Returns the bit of an alarm's type text, which is compared in upper case and without its blanks.
std::uint32_t TypeBit(std::string_view text) {
    constexpr std::string_view Names[] = {"INFORMATION", "WARNING", "ERROR", "FAILUREAUDIT", "SUCCESSAUDIT"};
    std::array<char, 12> folded;
    std::size_t size = 0;
    for (const char character : text) {
        if (character == ' ')
            continue;
        if (size == folded.size())
            return OtherType;
        folded[size++] = ToUpper(character);
    }
    std::uint32_t bit = FilterInformation;
    for (const std::string_view name : Names) {
        if (name == std::string_view(folded.data(), size))
            return bit;
        bit <<= 1U;
    }
    return OtherType;
}

}  // namespace

FilterMatcher::FilterMatcher(std::span<const SuppressionFilter> filters) {
    for (const SuppressionFilter& filter : filters) {
        if (Tests tests = MakeTests(filter); tests.EventTypes != 0)
            filters_.push_back(std::move(tests));
    }
}

bool FilterMatcher::TextTest::Accepts(const std::string& text) const {
    if (Wanted.empty())
        return true;
    const bool fits = FillsField ? Wanted.size() <= text.size() : Wanted.size() == text.size();
    return fits && std::equal(Wanted.begin(), Wanted.end(), text.begin(),
                              [](char upper, char character) { return upper == ToUpper(character); });
}

template <std::size_t Width>
FilterMatcher::TextTest FilterMatcher::MakeTextTest(const FixedText<Width>& field) {
    const std::string wanted = StripNulls(field.View());
    return {UpperCase(wanted), wanted.size() == Width};
}

FilterMatcher::Tests FilterMatcher::MakeTests(const SuppressionFilter& filter) {
    Tests tests{filter.EventID,
                0,
                FirstSecond(filter),
                LastSecond(filter),
                {MakeTextTest(filter.Source), MakeTextTest(filter.Category), MakeTextTest(filter.AccountName),
                 MakeTextTest(filter.Computer)}};
    const bool testsMore = filter.UseDateRange != FilterFalse || filter.EventID != AnyEventID ||
                           std::any_of(tests.Texts.begin(), tests.Texts.end(),
                                       [](const TextTest& test) { return !test.Wanted.empty(); });
    // compatibility: an alarm whose type is none of the five skips the type test.  It can match a filter with
    // other tests, but never one that tests only the type.
    if (testsMore)
        tests.EventTypes = OtherType;
    if (filter.EventTypes != 0)
        tests.EventTypes |= static_cast<std::uint32_t>(filter.EventTypes) & KnownTypes;
    else if (testsMore)
        tests.EventTypes |= KnownTypes;
    return tests;
}

bool FilterMatcher::Pass(const Tests& tests, const AlarmRecord& alarm, std::uint32_t eventType) {
    return (tests.EventID == AnyEventID || tests.EventID == alarm.EventID) &&
           (tests.EventTypes & eventType) != 0 && tests.FirstSecond <= alarm.DateTime.Seconds &&
           alarm.DateTime.Seconds <= tests.LastSecond && tests.Texts[3].Accepts(alarm.Computer) &&
           tests.Texts[2].Accepts(alarm.AccountName) && tests.Texts[0].Accepts(alarm.Source) &&
           tests.Texts[1].Accepts(alarm.Category);
}

bool FilterMatcher::Matches(const AlarmRecord& alarm) const {
    const std::uint32_t eventType = TypeBit(alarm.TypeOfEvent);
    return std::any_of(filters_.begin(), filters_.end(),
                       [&](const Tests& tests) { return Pass(tests, alarm, eventType); });
}

}  // namespace tallyhorn
