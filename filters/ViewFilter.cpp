#include "filters/ViewFilter.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

/// The number of rows that are tested or removed before the clock is read again, because reading it takes
/// longer than testing a row.
constexpr std::size_t RowsPerLook = 1024;
/// The number of messages that are read and shown before the clock is read again.  Their leaves are added
/// together, which is faster.
constexpr std::size_t MessagesPerLook = 64;

/// The filter's criteria for the rows of one channel.  Each text is replaced by its id in those rows, so that
/// a test compares only numbers.
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
    bool nothingMatches_ = false;  ///< whether a criterion's text occurs in no row, so that no row matches
};

/// Calls work(first, count) for consecutive groups of at most `size` of the indices 0 to `total` - 1.
template <typename Work>
void InGroups(std::size_t total, std::size_t size, const Work& work) {
    for (std::size_t first = 0; first < total; first += size)
        work(first, std::min(size, total - first));
}

std::size_t SlotCount(const MessageStore& messages) {
    return static_cast<std::size_t>(messages.UpperBound()) + 1;
}

bool SortsBefore(std::string_view a, std::string_view b) {
    const int order = CompareNoCase(a, b);
    return order != 0 ? order < 0 : a < b;
}

}  // namespace

// ---- the texts to choose from

MessageChannel& ViewFilter::ChannelOnShow() const {
    return context_.Received.In(ChannelOfPage(context_.Display.CurrentPage()));
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

std::optional<Slot> ViewFilter::SelectedSlot() const {
    const ChannelTraits& channel = ChannelOnShow().Traits;
    const ViewNumber active = context_.Received.ActiveView();
    if (context_.Display.CurrentPage() == MessagePage::Consolidated) {
        const TreeNode node = context_.Received.Tree.SelectedNode();
        return node.IsLeaf() ? std::optional(node.LeafSlot()) : std::nullopt;
    }
    std::optional<Slot> selected;
    if (active != ConsolidatedView && ChannelOfView(active) == channel.Id)
        selected = context_.Display.SelectedSlot(active);
    for (std::size_t list = 0; list < EventListCount && !selected; ++list)
        selected = context_.Display.SelectedSlot(ViewOfList(channel.Id, list));
    return selected;
}

ViewFilter::Criteria ViewFilter::SelectedTexts() const {
    Criteria texts;
    const MessageRows& rows = ChannelOnShow().Rows;
    if (const std::optional<Slot> slot = SelectedSlot(); slot && rows.Holds(*slot)) {
        for (std::size_t i = 0; i < CriterionCount; ++i)
            texts.at(i) = rows.Texts().Text(rows[*slot].Texts.at(i));
    }
    return texts;
}

// ---- applying

void ViewFilter::Apply(const Criteria& criteria) {
    const Gate::Hold hold(context_.Gate);
    MessageChannel& channel = ChannelOnShow();
    std::uint64_t rows = 0;
    for (const MessageList& list : channel.Lists)
        rows += list.Size();
    // Each row counts as two steps: it is tested, and then removed or given a new leaf.
    LongWork work(context_.Display, context_.Slices, 2 * rows);

    ShowLists(channel, false);
    const Division division = Divide(channel, criteria, work);
    std::vector<Slot> removedSlots;
    for (std::size_t list = 0; list < channel.Lists.size(); ++list) {
        const std::vector<Slot> removed = channel.Lists.at(list).RemoveAt(division.Removed.at(list));
        removedSlots.insert(removedSlots.end(), removed.begin(), removed.end());
    }
    if (channel.Traits.HasTree) {
        // Leaves refer to rows, so they are removed first.
        context_.Display.ShowView(ConsolidatedView, false);
        context_.Slices.RunNow();
        context_.Slices.RunNow();
        context_.Received.Tree.Clear();
        RemoveRows(channel, removedSlots, work);
        RebuildTree(division.Kept, work);
        context_.Display.ShowView(ConsolidatedView, true);
    } else {
        RemoveRows(channel, removedSlots, work);
    }
    ShowLists(channel, true);

    criteria_ = criteria;
    inForce_ = true;
    context_.Received.UpdateListViewStatus();
    context_.Display.ShowFilterCommand(true);
    // Runs pending events, so that the tree view shows the new leaves before arrivals add more.
    context_.Slices.RunNow();
}

ViewFilter::Division ViewFilter::Divide(const MessageChannel& channel, const Criteria& criteria,
                                        LongWork& work) {
    const RowTest test(channel.Rows, criteria);
    Division division;
    for (std::size_t list = 0; list < channel.Lists.size(); ++list) {
        const MessageList& rows = channel.Lists.at(list);
        InGroups(rows.Size(), RowsPerLook, [&](std::size_t first, std::size_t count) {
            for (std::size_t position = first; position < first + count; ++position) {
                const Slot slot = rows.SlotAt(position);
                if (test.Matches(slot))
                    division.Kept.push_back(slot);
                else
                    division.Removed.at(list).push_back(position);
            }
            work.Advance(count);
        });
    }
    return division;
}

void ViewFilter::RemoveRows(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work) {
    InGroups(slots.size(), RowsPerLook, [&](std::size_t first, std::size_t count) {
        channel.Rows.Remove(std::span(slots).subspan(first, count));
        work.Advance(count);
    });
}

void ViewFilter::RebuildTree(const std::vector<Slot>& kept, LongWork& work) {
    const AlarmDate now = LocalTime();
    InGroups(kept.size(), MessagesPerLook, [&](std::size_t first, std::size_t count) {
        for (const Slot slot : std::span(kept).subspan(first, count))
            context_.Received.NoteSyslogLeaf(slot, now, context_.CurrentAlarm);
        AddLeaves(count, work);
    });
}

/// Adds the noted leaves before it calls Advance, because Advance lets events run, and every row must have
/// its leaf when events run.
void ViewFilter::AddLeaves(std::size_t count, LongWork& work) {
    context_.Received.Tree.AddNoted();
    work.Advance(count);
}

bool ViewFilter::PassesViewFilter(const AlarmRecord& alarm) const {
    if (!inForce_)
        return true;
    const std::array<const std::string*, CriterionCount> fields = {&alarm.AlarmName, &alarm.LogType,
                                                                   &alarm.AccountName, &alarm.Computer};
    for (std::size_t i = 0; i < CriterionCount; ++i) {
        const std::optional<std::string>& criterion = criteria_.at(i);
        if (criterion &&
            (criterion->size() != fields.at(i)->size() || CompareNoCase(*criterion, *fields.at(i)) != 0))
            return false;
    }
    return true;
}

// ---- removing

void ViewFilter::RemoveViewFilter() {
    context_.Display.ShowFilterCommand(false);
    const Gate::Hold hold(context_.Gate);
    LongWork work(
        context_.Display, context_.Slices,
        SlotCount(context_.Received.Syslog.Messages) + SlotCount(context_.Received.NetBios.Messages));

    ShowAllViews(false);
    context_.Received.ClearViews();
    AddAllRows(context_.Received.Syslog, work);
    AddAllRows(context_.Received.NetBios, work);
    ShowAllViews(true);
    inForce_ = false;
    context_.Received.UpdateListViewStatus();
    // Runs pending events, so that the views show the rows before arrivals add more.
    context_.Slices.RunNow();
}

void ViewFilter::AddAllRows(MessageChannel& channel, LongWork& work) {
    const AlarmDate now = LocalTime();
    InGroups(SlotCount(channel.Messages), MessagesPerLook, [&](std::size_t first, std::size_t count) {
        for (std::size_t slot = first; slot < first + count; ++slot)
            context_.Received.ShowMessage(channel, static_cast<Slot>(slot), now, context_.CurrentAlarm);
        AddLeaves(count, work);
    });
}

void ViewFilter::ToggleViewFilter(const std::function<void()>& showDialog) {
    if (inForce_)
        RemoveViewFilter();
    else
        showDialog();
}

// ---- showing and hiding views

void ViewFilter::ShowLists(const MessageChannel& channel, bool shown) {
    for (std::size_t list = 0; list < channel.Lists.size(); ++list)
        context_.Display.ShowView(ViewOfList(channel.Traits.Id, list), shown);
}

void ViewFilter::ShowAllViews(bool shown) {
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view)
        context_.Display.ShowView(view, shown);
}

}  // namespace tallyhorn
