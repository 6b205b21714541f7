#include "views/MessageDetails.h"

#include <algorithm>

namespace tallyhorn {

bool MessageDetails::Show(ViewNumber view, Slot slot) {
    if (!PlaceOf(view, slot))
        return false;
    view_ = view;
    Take(slot);
    return true;
}

void MessageDetails::Take(Slot slot) {
    slot_ = slot;
    from_.reset();
    text_ = ChannelOfShown().Messages.Text(slot);
    if (IsInTree()) {
        const MessageRows& rows = received_.Syslog.Rows;
        group_ = {rows.CellText(slot, MessageColumn::Alarm), rows[slot].Type,
                  rows.CellText(slot, MessageColumn::Computer)};
    }
    FindPlace();
}

/// Sorts the leaves as the view does when it opens their group.  Until then, they are in order of arrival.
void MessageDetails::SortSiblings() {
    if (IsInTree())
        received_.Tree.SortChildren(Parent());
}

void MessageDetails::FindPlace() {
    SortSiblings();
    place_ = PlaceOf(view_, slot_).value();
}

// ---- stepping

void MessageDetails::StepFrom(std::optional<Slot> selected) {
    const bool shownIsSelected = IsThere() && received_.List(view_).IsSelected(PlaceOf(view_, slot_).value());
    from_ = shownIsSelected ? std::nullopt : selected;
}

std::size_t MessageDetails::PlaceOfStep() const {
    return (from_ ? PlaceOf(view_, *from_) : std::nullopt).value_or(place_);
}

bool MessageDetails::ShowPrevious() {
    return IsInTree() ? ShowTreeMessage(-1) : ShowListMessage(1, -1);
}

bool MessageDetails::ShowNext() {
    return IsInTree() ? ShowTreeMessage(1) : ShowListMessage(EntryCount(), 1);
}

/// Shows the next message if `step` is 1, the previous one if it is -1.  Returns false if the current row,
/// counted from 1, is `limit`, the last one in that direction.
bool MessageDetails::ShowListMessage(std::size_t limit, int step) {
    if (!IsThere() && !from_)
        return false;
    NotePlace();
    const std::size_t place = PlaceOfStep();
    if (place + 1 == limit)
        return false;
    Take(SlotAt(step < 0 ? place - 1 : place + static_cast<std::size_t>(step)));
    return true;
}

bool MessageDetails::ShowTreeMessage(int step) {
    TreeNode node = TreeNode::Leaf(slot_);
    const ConsolidatedTree& tree = received_.Tree;
    if (!IsThere() || !(step < 0 ? tree.FindPreviousAlarmNode(node) : tree.FindNextAlarmNode(node)))
        return false;
    Take(node.LeafSlot());
    return true;
}

// ---- following

void MessageDetails::NotePlace() {
    if (IsThere())
        place_ = PlaceOf(view_, slot_).value();
}

MessageDetails::Found MessageDetails::LookAgain() {
    if (IsThere()) {
        FindPlace();
        return Found::Same;
    }
    const std::size_t count = EntryCount();
    if (count == 0)
        return Found::Nothing;
    SortSiblings();
    const std::size_t place = IsInTree() && place_ > 0 ? place_ - 1 : place_;
    Take(SlotAt(std::min(place, count - 1)));
    return Found::Other;
}

void MessageDetails::FillCurrentAlarm(AlarmRecord& alarm, AlarmDate now) const {
    received_.ReadKeptText(ChannelOfShown(), text_, now, alarm);
}

// ---- the view

bool MessageDetails::IsThere() const {
    return ChannelOfShown().Messages.Text(slot_) == text_ && PlaceOf(view_, slot_);
}

const MessageChannel& MessageDetails::ChannelOfShown() const {
    return received_.In(ChannelOfView(view_));
}

std::optional<std::size_t> MessageDetails::PlaceOf(ViewNumber view, Slot slot) const {
    if (view != ConsolidatedView)
        return received_.List(view).PositionOf(slot);
    const TreeNode leaf = TreeNode::Leaf(slot);
    return received_.Tree.Holds(leaf) ? std::optional(received_.Tree.PositionOf(leaf)) : std::nullopt;
}

/// Returns the group of the message's computer, or the root if the tree no longer has that group.
TreeNode MessageDetails::Parent() const {
    return received_.Tree.FindComputer(group_.Alarm, group_.Type, group_.Computer);
}

std::size_t MessageDetails::EntryCount() const {
    if (!IsInTree())
        return received_.List(view_).Size();
    const TreeNode parent = Parent();
    return parent.IsRoot() ? 0 : received_.Tree.ChildCount(parent);
}

Slot MessageDetails::SlotAt(std::size_t place) const {
    return IsInTree() ? received_.Tree.ChildAt(Parent(), place).LeafSlot()
                      : received_.List(view_).SlotAt(place);
}

// ---- text

bool IsTabular(std::string_view text) {
    constexpr std::size_t ColumnGap = 3;
    std::size_t blanks = 0;
    bool tab = false;
    bool begun = false;  // indentation is not a column
    for (const char character : text) {
        if (character == '\r' || character == '\n') {
            begun = tab = false;
            blanks = 0;
        } else if (character == '\t' || character == ' ') {
            tab = tab || character == '\t';
            ++blanks;
        } else {
            if (begun && (tab || blanks >= ColumnGap))
                return true;
            begun = true;
            tab = false;
            blanks = 0;
        }
    }
    return false;
}

std::size_t LongestWord(std::string_view text) {
    std::size_t longest = 0;
    for (std::size_t end = 0; !text.empty(); text.remove_prefix(std::min(end + 1, text.size()))) {
        end = std::min(text.find_first_of(" \t\r\n"), text.size());
        longest = std::max(longest, end);
    }
    return longest;
}

}  // namespace tallyhorn
