#include "filters/FilterMatcher.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "filters/FilterDates.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// The text test that is not in force.  A text that no filter wants is FoldedTexts::Unknown as well, which
/// passes only here.
constexpr FoldedTexts::Id AnyText = FoldedTexts::Unknown;

constexpr std::uint32_t RecognisedTypes =
    FilterInformation | FilterWarning | FilterError | FilterFailureAudit | FilterSuccessAudit;
/// Stands beside the bits of the five event types for every other type text.
constexpr std::uint32_t UnrecognisedType = 32;

/// The bit of an alarm's type text, compared without blanks and in upper case.
std::uint32_t TypeBit(std::string_view text) {
    constexpr std::string_view Names[] = {"INFORMATION", "WARNING", "ERROR", "FAILUREAUDIT", "SUCCESSAUDIT"};
    std::array<char, 12> folded;
    std::size_t size = 0;
    for (const char character : text) {
        if (character == ' ')
            continue;
        if (size == folded.size())
            return UnrecognisedType;
        folded[size++] = ToUpper(character);
    }
    std::uint32_t bit = FilterInformation;
    for (const std::string_view name : Names) {
        if (name == std::string_view(folded.data(), size))
            return bit;
        bit <<= 1U;
    }
    return UnrecognisedType;
}

}  // namespace

FilterMatcher::FilterMatcher(std::span<const SuppressionFilter> table) {
    for (const SuppressionFilter& filter : table) {
        if (StripNulls(filter.FilterName.View()).empty())
            continue;
        const Tests tests = MakeTests(filter);
        if (tests.EventTypes != 0)
            GroupOf(tests).push_back(tests);
    }
}

FilterMatcher::Tests FilterMatcher::MakeTests(const SuppressionFilter& filter) {
    Tests tests{FirstSecond(filter), LastSecond(filter), {}, filter.EventID, 0};
    bool others = filter.UseDateRange != FilterFalse || filter.EventID != AnyEventID;
    const std::array<std::string_view, TextFields> fields = {
        filter.Source.View(), filter.Category.View(), filter.AccountName.View(), filter.Computer.View()};
    for (std::size_t field = 0; field < TextFields; ++field) {
        const std::string text = StripNulls(fields[field]);
        tests.Wanted[field] = text.empty() ? AnyText : texts_[field].Add(text);
        others = others || !text.empty();
    }
    // The type test overrules the others for the types that it knows and leaves any other type to them: with
    // no other test in force nothing speaks for a match there.
    tests.EventTypes = filter.EventTypes == 0
                           ? RecognisedTypes
                           : static_cast<std::uint32_t>(filter.EventTypes) & RecognisedTypes;
    if (others)
        tests.EventTypes |= UnrecognisedType;
    else if (filter.EventTypes == 0)
        tests.EventTypes = 0;
    return tests;
}

FilterMatcher::Group& FilterMatcher::GroupOf(const Tests& tests) {
    for (std::size_t field = 0; field < TextFields; ++field) {
        const FoldedTexts::Id wanted = tests.Wanted[field];
        if (wanted == AnyText)
            continue;
        std::vector<Group>& groups = byText_[field];
        groups.resize(std::max<std::size_t>(groups.size(), std::size_t{wanted} + 1));
        return groups[wanted];
    }
    return withoutText_;
}

bool FilterMatcher::Pass(const Tests& tests, const Facts& facts) {
    if (tests.EventID != AnyEventID && tests.EventID != facts.EventID)
        return false;
    for (std::size_t field = 0; field < TextFields; ++field) {
        if (tests.Wanted[field] != AnyText && tests.Wanted[field] != facts.Held[field])
            return false;
    }
    return (tests.EventTypes & facts.EventType) != 0 && tests.FirstSecond <= facts.Second &&
           facts.Second <= tests.LastSecond;
}

bool FilterMatcher::AnyPasses(const Group& group, const Facts& facts) {
    return std::any_of(group.begin(), group.end(), [&](const Tests& tests) { return Pass(tests, facts); });
}

bool FilterMatcher::Matches(const AlarmRecord& alarm) const {
    const Facts facts{alarm.DateTime.Seconds,
                      {texts_[0].Find(alarm.Source), texts_[1].Find(alarm.Category),
                       texts_[2].Find(alarm.AccountName), texts_[3].Find(alarm.Computer)},
                      alarm.EventID,
                      TypeBit(alarm.TypeOfEvent)};
    if (AnyPasses(withoutText_, facts))
        return true;
    for (std::size_t field = 0; field < TextFields; ++field) {
        if (facts.Held[field] < byText_[field].size() && AnyPasses(byText_[field][facts.Held[field]], facts))
            return true;
    }
    return false;
}

}  // namespace tallyhorn
