#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "views/messages/LongWork.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"
#include "views/messages/ViewFilterState.h"

namespace tallyhorn {

/// Narrows what the main window shows to alarms with chosen values in up to four columns, and shows all that
/// is kept again when it comes off.  User-interface thread only; events may run while it goes on or comes
/// off, and arrivals wait meanwhile.
class ViewFilter final : public ViewFilterState {
public:
    /// All of it outlives the filter.
    ViewFilter(ReceivedMessages& received, ServerDisplay& display, TimeSlices& slices, const Clock& clock,
               AlarmRecord& currentAlarm)
        : received_(received),
          display_(display),
          slices_(slices),
          clock_(clock),
          currentAlarm_(currentAlarm) {}

    /// The columns Alarm, LogType, AccountName and Computer of the lists, in this order.
    static constexpr std::size_t CriterionCount = MessageRow::TextCount;
    /// A text for each column that is to be filtered by.
    using Criteria = std::array<std::optional<std::string>, CriterionCount>;
    using Values = std::array<std::vector<std::string>, CriterionCount>;

    /// What the lists of the channel on show hold in each column, each text once, ordered without regard to
    /// case.
    Values ValuesOnShow() const;

    /// Takes all rows off the lists of the channel on show whose texts are not exactly those of `criteria`,
    /// and is in force from then on.
    void Apply(const Criteria& criteria);
    /// Shows every kept notification of both channels, in the order of their slots, whatever was done to them
    /// since the filter went on.
    void RemoveViewFilter();
    /// Takes the filter off where it is in force, else runs `showDialog`, in which the user may apply one.
    void ToggleViewFilter(const std::function<void()>& showDialog);

    bool InForce() const override { return inForce_; }
    /// Without regard to case, unlike Apply; an empty criterion lets everything pass.  The same for both
    /// channels, whichever the filter was applied to.
    bool PassesViewFilter(const AlarmRecord& alarm) const override;

private:
    /// Of each list, where the rows stand that are to go, and the slots of those that stay.
    struct Division {
        std::array<std::vector<std::size_t>, EventListCount> Going;
        std::vector<Slot> Staying;
    };

    MessageChannel& ChannelOnShow() const;
    void ShowLists(const MessageChannel& channel, bool shown);
    void ShowAllViews(bool shown);
    Division Divide(const MessageChannel& channel, const Criteria& criteria, LongWork& work);
    void RemoveRows(MessageChannel& channel, const std::vector<Slot>& slots, LongWork& work);
    void AddAllRows(MessageChannel& channel, LongWork& work);
    void RebuildTree(const std::vector<Slot>& staying, LongWork& work);
    void AddLeaves(std::size_t count, LongWork& work);
    AlarmDate LocalTime() const { return AlarmDate{clock_.LocalSeconds()}; }

    ReceivedMessages& received_;
    ServerDisplay& display_;
    TimeSlices& slices_;
    const Clock& clock_;
    AlarmRecord& currentAlarm_;
    bool inForce_ = false;
    std::array<std::string, CriterionCount> criteria_;
};

}  // namespace tallyhorn
