#include "filters/ViewFilter.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// Steps that are too short for a look at the clock after each.
constexpr std::size_t StepsPerLook = 1024;
/// Longer steps, and leaves that are cheaper to add in such groups.
constexpr std::size_t LeavesTogether = 64;

/// The criteria by the numbers of their texts in one channel's rows.
class RowTest {
public:
    RowTest(const MessageRows& rows, const ViewFilter::Criteria& criteria) : rows_(rows) {
        for (std::size_t i = 0; i < criteria.size(); ++i) {
            if (!criteria.at(i))
                continue;
            const std::optional<TextId> text = rows.Texts().Find(*criteria.at(i));
            nothingMatches_ = nothingMatches_ || !text;
            texts_.at(i) = text;
        }
    }

    bool Matches(Slot slot) const {
        if (nothingMatches_)
            return false;
        const MessageRow& row = rows_[slot];
        for (std::size_t i = 0; i < texts_.size(); ++i) {
            if (texts_[i] && *texts_[i] != row.Texts[i])
                return false;
        }
        return true;
    }

private:
    const MessageRows& rows_;
    std::array<std::optional<TextId>, ViewFilter::CriterionCount> texts_;
    bool nothingMatches_ = false;  ///< a text that no row has at all
};

/// Calls work(FIRST, COUNT) for all of `total` things, in groups of at most `size`.
template <typename Work>
void InGroups(std::size_t total, std::size_t size, const Work& work) {
    for (std::size_t first = 0; first < total; first += size)
        work(first, std::min(size, total - first));
}

/// What may be filled.
std::size_t SlotCount(const MessageStore& messages) {
    return static_cast<std::size_t>(messages.UpperBound()) + 1;
}

bool SortsBefore(std::string_view a, std::string_view b) {
    const int order = CompareNoCase(a, b);
    return order != 0 ? order < 0 : a < b;
}

}  // namespace

// ---- the channel on show

MessageChannel& ViewFilter::ChannelOnShow() const {
    return received_.In(ChannelOfPage(display_.CurrentPage()));
}

ViewFilter::Values ViewFilter::ValuesOnShow() const {
    const MessageRows& rows = ChannelOnShow().Rows;
    std::array<std::vector<bool>, CriterionCount> seen;
    seen.fill(std::vector<bool>(rows.Texts().IdBound()));
    Values values;
    for (Slot slot = 0; slot < rows.SlotBound(); ++slot) {
        if (!rows.Holds(slot))
            continue;
        for (std::size_t i = 0; i < CriterionCount; ++i) {
            const TextId text = rows[slot].Texts[i];
            if (seen[i][text])
                continue;
            seen[i][text] = true;
            values[i].emplace_back(rows.Texts().Text(text));
        }
    }
    for (std::vector<std::string>& texts : values)
        std::sort(texts.begin(), texts.end(), SortsBefore);
    return values;
}

// ---- on

void ViewFilter::Apply(const Criteria& criteria) {
    const Gate::Hold hold(received_.Gate());
    MessageChannel& channel = ChannelOnShow();
    std::uint64_t rows = 0;
    for (const MessageList& list : channel.Lists)
        rows += list.Size();
    // Two steps for each row: it is tested, then it is removed or its leaf is made again.
    LongWork work(display_, slices_, 2 * rows);

    ShowLists(channel, false);
    const Division division = Divide(channel, criteria, work);
    std::vector<Slot> gone;
    for (std::size_t list = 0; list < channel.Lists.size(); ++list) {
        const std::vector<Slot> removed = channel.Lists.at(list).RemoveAt(division.Going.at(list));
        gone.insert(gone.end(), removed.begin(), removed.end());
    }
    if (channel.Traits.HasTree) {
        // Leaves are removed before the rows that they show.
        display_.ShowView(ConsolidatedView, false);
        slices_.RunNow();
        slices_.RunNow();
        received_.Tree.Clear();
        RemoveRows(channel, gone, work);
        RebuildTree(division.Staying, work);
        display_.ShowView(ConsolidatedView, true);
    } else {
        RemoveRows(channel, gone, work);
    }
    ShowLists(channel, true);

    for (std::size_t i = 0; i < CriterionCount; ++i)
        criteria_.at(i) = criteria.at(i).value_or(std::string());
    inForce_ = true;
    received_.UpdateListViewStatus();
    display_.ShowFilterCommand(true);
    // The tree takes in what it was built of while arrivals are still held back.
    slices_.RunNow();
}

ViewFilter::Division ViewFilter::Divide(const MessageChannel& channel, const Criteria& criteria,
                                        LongWork& work) {
    const RowTest test(channel.Rows, criteria);
    Division division;
    for (std::size_t list = 0; list < channel.Lists.size(); ++list) {
        const MessageList& rows = channel.Lists.at(list);
        InGroups(rows.Size(), StepsPerLook, [&](std::size_t first, std::size_t count) {
            for (std::size_t position = first; position < first + count; ++position) {
                const Slot slot = rows.SlotAt(position);
                if (test.Matches(slot))
                    division.Staying.push_back(slot);
                else
                    division.Going.at(list).push_back(position);
            }
            work.Advance(count);
        });
    }
    return division;
}

void ViewFilter::RemoveRows(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work) {
    InGroups(slots.size(), StepsPerLook, [&](std::size_t first, std::size_t count) {
        channel.Rows.Remove(std::span(slots).subspan(first, count));
        work.Advance(count);
    });
}

void ViewFilter::RebuildTree(const std::vector<Slot>& staying, LongWork& work) {
    const AlarmDate now = LocalTime();
    InGroups(staying.size(), LeavesTogether, [&](std::size_t first, std::size_t count) {
        for (const Slot slot : std::span(staying).subspan(first, count))
            received_.NoteSyslogLeaf(slot, now, currentAlarm_);
        AddLeaves(count, work);
    });
}

/// Events run only where every row has its leaf.
void ViewFilter::AddLeaves(std::size_t count, LongWork& work) {
    received_.Tree.AddNoted();
    work.Advance(count);
}

bool ViewFilter::PassesViewFilter(const AlarmRecord& alarm) const {
    if (!inForce_)
        return true;
    const std::array<const std::string*, CriterionCount> fields = {&alarm.AlarmName, &alarm.LogType,
                                                                   &alarm.AccountName, &alarm.Computer};
    for (std::size_t i = 0; i < CriterionCount; ++i) {
        const std::string& criterion = criteria_[i];
        if (!criterion.empty() &&
            (criterion.size() != fields[i]->size() || CompareNoCase(criterion, *fields[i]) != 0))
            return false;
    }
    return true;
}

// ---- off

void ViewFilter::RemoveViewFilter() {
    display_.ShowFilterCommand(false);
    const Gate::Hold hold(received_.Gate());
    LongWork work(display_, slices_,
                  SlotCount(received_.Syslog.Messages) + SlotCount(received_.NetBios.Messages));

    ShowAllViews(false);
    received_.ClearViews();
    AddAllRows(received_.Syslog, work);
    AddAllRows(received_.NetBios, work);
    ShowAllViews(true);
    inForce_ = false;
    received_.UpdateListViewStatus();
    // The views take in what came while arrivals are still held back.
    slices_.RunNow();
}

void ViewFilter::AddAllRows(MessageChannel& channel, LongWork& work) {
    const AlarmDate now = LocalTime();
    InGroups(SlotCount(channel.Messages), LeavesTogether, [&](std::size_t first, std::size_t count) {
        for (std::size_t slot = first; slot < first + count; ++slot)
            received_.ShowMessage(channel, static_cast<Slot>(slot), now, currentAlarm_);
        AddLeaves(count, work);
    });
}

void ViewFilter::ToggleViewFilter(const std::function<void()>& showDialog) {
    if (inForce_)
        RemoveViewFilter();
    else
        showDialog();
}

// ---- both

void ViewFilter::ShowLists(const MessageChannel& channel, bool shown) {
    for (std::size_t list = 0; list < channel.Lists.size(); ++list)
        display_.ShowView(ViewOfList(channel.Traits.Id, list), shown);
}

void ViewFilter::ShowAllViews(bool shown) {
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view)
        display_.ShowView(view, shown);
}

}  // namespace tallyhorn
