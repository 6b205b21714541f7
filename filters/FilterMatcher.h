#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "filters/FoldedTexts.h"
#include "filters/SuppressionFilter.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// Owns the tests of a table of suppression filters in the form that matches fastest: each text is a number,
/// each date a whole second.  Any thread may call it, since it never changes after its making.
class FilterMatcher {
public:
    FilterMatcher() = default;
    explicit FilterMatcher(std::span<const SuppressionFilter> table);

    /// Whether at least one filter of the table matches: it has a test in force, and no test of it fails.
    bool Matches(const AlarmRecord& alarm) const;

private:
    /// Source, Category, AccountName and Computer, in the order of their numbers.
    static constexpr std::size_t TextFields = 4;
    using Texts = std::array<FoldedTexts::Id, TextFields>;

    /// The tests of one filter; a test not in force holds what every alarm passes.
    struct Tests {
        std::int64_t FirstSecond;
        std::int64_t LastSecond;
        Texts Wanted;
        std::int32_t EventID;
        /// The event types that pass, UnrecognisedType among them.
        std::uint32_t EventTypes;
    };
    using Group = std::vector<Tests>;

    /// An alarm in the same form.
    struct Facts {
        std::int64_t Second;
        Texts Held;
        std::int32_t EventID;
        std::uint32_t EventType;
    };

    Tests MakeTests(const SuppressionFilter& filter);
    Group& GroupOf(const Tests& tests);
    static bool AnyPasses(const Group& group, const Facts& facts);
    static bool Pass(const Tests& tests, const Facts& facts);

    std::array<FoldedTexts, TextFields> texts_;
    /// Each filter stands once: under the number of the first text that it tests, so that an alarm meets only
    /// filters that want one of its texts, or here where it tests none.
    Group withoutText_;
    std::array<std::vector<Group>, TextFields> byText_;
};

}  // namespace tallyhorn
