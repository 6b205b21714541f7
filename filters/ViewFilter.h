#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "views/messages/LongWork.h"
#include "views/messages/MessageContext.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// Hides the rows of all messages except those with chosen texts in up to four columns, and shows all
/// messages again when it is removed.  Apply and RemoveViewFilter let pending events run, and hold arrivals.
class ViewFilter final : public ViewFilterState {
public:
    /// The objects that `context` refers to must outlive the filter.
    explicit ViewFilter(const MessageContext& context) : context_(context) {}

    /// The columns Alarm, LogType, AccountName and Computer of the lists, in this order.
    static constexpr std::size_t CriterionCount = MessageRow::TextCount;
    /// The text that each column must have; nothing for a column that accepts all texts.
    using Criteria = std::array<std::optional<std::string>, CriterionCount>;
    using Values = std::array<std::vector<std::string>, CriterionCount>;

    /// Returns the texts in each column of the lists of the channel whose page is in front: each text once,
    /// sorted without regard to case.
    Values ValuesOnShow() const;

    /// Returns the texts of the row selected in the active view or, if it has none, in another list of the
    /// channel whose page is in front.  Returns nothing if no row is selected.
    Criteria SelectedTexts() const;

    /// Removes the messages whose texts do not equal `criteria` from the lists of the channel whose page is
    /// in front, and from the tree if that channel is syslog.  compatibility: case matters here, but not for
    /// the arrivals that PassesViewFilter tests.
    void Apply(const Criteria& criteria);
    /// Shows every kept message of both channels again, in the order of their slots.
    void RemoveViewFilter();
    /// Removes the filter if it is in force; otherwise calls `showDialog`, in which the user may apply one.
    void ToggleViewFilter(const std::function<void()>& showDialog);

    bool InForce() const override { return inForce_; }
    /// Returns whether to show an arrival: no filter is in force, or its texts equal the chosen ones
    /// regardless of case.  compatibility: arrivals of both channels are tested, although Apply changes the
    /// lists of one.
    bool PassesViewFilter(const AlarmRecord& alarm) const override;

private:
    struct Division {
        std::array<std::vector<std::size_t>, EventListCount> Removed;  ///< positions in each list
        std::vector<Slot> Kept;
    };

    MessageChannel& ChannelOnShow() const;
    std::optional<Slot> SelectedSlot() const;
    void ShowLists(const MessageChannel& channel, bool shown);
    void ShowAllViews(bool shown);
    Division Divide(const MessageChannel& channel, const Criteria& criteria, LongWork& work);
    void RemoveRows(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work);
    void AddAllRows(MessageChannel& channel, LongWork& work);
    void RebuildTree(const std::vector<Slot>& kept, LongWork& work);
    void AddLeaves(std::size_t count, LongWork& work);
    AlarmDate LocalTime() const { return AlarmDate{context_.Time.LocalSeconds()}; }

    const MessageContext context_;
    bool inForce_ = false;
    Criteria criteria_;
};

}  // namespace tallyhorn
