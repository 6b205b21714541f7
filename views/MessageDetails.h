#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "records/AlarmRecord.h"
#include "records/EventTypes.h"
#include "views/messages/ReceivedMessages.h"

namespace tallyhorn {

/// Which kept notification the detail window shows, in which view, and what comes next when that one goes.
/// User-interface thread only.  Slots serve again, so a notification is known by its slot and its text.
class MessageDetails {
public:
    /// `received` outlives this.
    explicit MessageDetails(ReceivedMessages& received) : received_(received) {}

    /// False, and nothing changes, where `view` does not show the notification of `slot`.
    bool Show(ViewNumber view, Slot slot);

    ViewNumber View() const { return view_; }
    Slot ShownSlot() const { return slot_; }
    const std::string& Text() const { return text_; }

    /// As things were at the last look or step.
    bool HasPrevious() const { return place_ > 0; }
    bool HasNext() const { return place_ + 1 < EntryCount(); }
    /// To the entry before or behind in the view; false, and nothing changes, at its ends.
    bool ShowPrevious();
    bool ShowNext();

    /// To be called before entries of the view go or are moved: what takes the place of one that goes is told
    /// by where that one stood last.
    void NotePlace();

    enum class Found { Same, Other, Nothing };
    /// Follows the notification to where it stands now.  Where the view no longer shows it, what took its
    /// place is shown: in a list that row or else the last, in the tree the sibling before or else behind.
    Found LookAgain();

    /// Reads the notification as its channel does; a field that its text does not tell keeps what it held.
    void FillCurrentAlarm(AlarmRecord& alarm, AlarmDate now) const;

private:
    /// What the computer of a leaf is found by when the tree was made anew.
    struct Group {
        std::string Alarm;
        EventType Type{};
        std::string Computer;
    };

    bool ShowListMessage(std::size_t limit, int step);
    bool ShowTreeMessage(int step);
    void Take(Slot slot);
    void SortSiblings();
    void FindPlace();
    bool IsThere() const;
    bool IsInTree() const { return view_ == ConsolidatedView; }
    const MessageChannel& ChannelOfShown() const;
    std::optional<std::size_t> PlaceOf(ViewNumber view, Slot slot) const;
    TreeNode Parent() const;
    std::size_t EntryCount() const;
    Slot SlotAt(std::size_t place) const;

    ReceivedMessages& received_;
    ViewNumber view_ = 0;
    Slot slot_ = -1;
    std::size_t place_ = 0;  ///< from 0, in the list or among the leaves of its computer
    std::string text_;
    Group group_;
};

/// Whether a text is laid out in columns, which a proportional font would push apart: a line of it has a tab,
/// or three blanks in a row, between other characters.
bool IsTabular(std::string_view text);
/// The length of the longest run of characters without a blank, tab or line end.
std::size_t LongestWord(std::string_view text);

}  // namespace tallyhorn
