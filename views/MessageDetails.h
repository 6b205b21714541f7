#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "records/AlarmRecord.h"
#include "records/EventTypes.h"
#include "views/messages/ReceivedMessages.h"

namespace tallyhorn {

/// Knows which message of which view the detail window shows, and chooses another one when that message is
/// removed. Slots are reused, so a message is identified by its slot and its text together.
class MessageDetails {
public:
    /// `received` must outlive this object.
    explicit MessageDetails(ReceivedMessages& received) : received_(received) {}

    /// Shows the message of `slot` in `view`; returns false and changes nothing if the view does not have it.
    bool Show(ViewNumber view, Slot slot);

    ViewNumber View() const { return view_; }
    Slot ShownSlot() const { return slot_; }
    const std::string& Text() const { return text_; }

    /// Makes the next step start at `selected`, a row that is selected in the list, unless the shown message
    /// is selected too.  Valid until another message is shown.  Not to be called for the tree.
    void StepFrom(std::optional<Slot> selected);
    /// Return whether the view has a message before or after the one at which the next step starts, as of the
    /// last call of Show, StepFrom, ShowPrevious, ShowNext or LookAgain.
    bool HasPrevious() const { return PlaceOfStep() > 0; }
    bool HasNext() const { return PlaceOfStep() + 1 < EntryCount(); }
    /// Change to the message before or after that one.  Return false and change nothing if there is none, or
    /// if the view contains neither that message nor the shown one.
    bool ShowPrevious();
    bool ShowNext();

    /// To be called before rows or leaves of the view are removed or reordered.  Remembers the message's
    /// position, by which LookAgain chooses another one if the message is removed.
    void NotePlace();

    enum class Found { Same, Other, Nothing };
    /// To be called after the view has changed.  If the view no longer contains the message, changes to the
    /// row now at the message's position, or else to the last row; in the tree, to the previous leaf of its
    /// computer, or else to the next.
    Found LookAgain();

    /// Reads the message's text into `alarm`.  A field that the text does not contain keeps its value.
    void FillCurrentAlarm(AlarmRecord& alarm, AlarmDate now) const;

private:
    /// Identifies a leaf's computer by texts, since a rebuilt tree gives its groups other numbers.
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
    std::size_t PlaceOfStep() const;
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
    std::size_t place_ = 0;     ///< the index of the message in its list, or among the leaves of its computer
    std::optional<Slot> from_;  ///< the message from which the next step starts; if empty, the shown one
    std::string text_;
    Group group_;
};

/// Returns whether a line of the text has a tab, or three blanks in a row, between other characters: such
/// columns are aligned only in a fixed-pitch font.
bool IsTabular(std::string_view text);
/// Returns the length of the longest run of characters without a blank, tab or line end.
std::size_t LongestWord(std::string_view text);

}  // namespace tallyhorn
