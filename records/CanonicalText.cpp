#include "records/CanonicalText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "records/AnsiText.h"
#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

constexpr std::string_view DateLabel = "Date: ";
constexpr std::string_view NameLabel = "\r\nAlarm Name: ";
constexpr std::string_view LogTypeLabel = "\r\nLog Type: ";
constexpr std::string_view SourceLabel = "\r\nSource: ";
constexpr std::string_view TypeLabel = "\r\nType Of Event: ";
constexpr std::string_view CategoryLabel = "\r\nCategory: ";
constexpr std::string_view EventIDLabel = "\r\nEventID: ";
constexpr std::string_view AccountLabel = "\r\nAccount: ";
constexpr std::string_view ComputerLabel = "\r\nComputer: ";
constexpr std::string_view DescriptionLabel = "\r\nDescription: \r\n";

constexpr std::size_t LongestDate = std::string_view("12/31/9999 12:59:59 PM").size();
constexpr std::size_t LongestNumber = std::string_view("-2147483648").size();
/// The largest total size of the labels, the date and the event id of a message text, without its other
/// fields.
constexpr std::size_t MostBesideFields = [] {
    std::size_t size = LongestDate + LongestNumber;
    for (const std::string_view label :
         {DateLabel, NameLabel, LogTypeLabel, SourceLabel, TypeLabel, CategoryLabel, EventIDLabel,
          AccountLabel, ComputerLabel, DescriptionLabel})
        size += label.size();
    return size;
}();

/// The fields of a message text, as views into it.
struct MessageFields {
    std::string_view Date, AlarmName, LogType, Source, TypeOfEvent, Category;
    std::int32_t EventID = 0;
    std::string_view AccountName, Computer, Description;
};

/// Splits a message text at its labels, from front to back.  Each function returns false if its label is not
/// found.
class LabelledText {
public:
    explicit LabelledText(std::string_view text) : remaining_(text) {}

    bool Begin(std::string_view label) {
        if (!remaining_.starts_with(label))
            return false;
        remaining_.remove_prefix(label.size());
        return true;
    }

    /// Removes the text before the next `label` and the label itself, and stores that text in `field`.
    bool TakeUntil(std::string_view label, std::string_view& field) {
        const std::size_t end = remaining_.find(label);
        if (end == std::string_view::npos)
            return false;
        field = remaining_.substr(0, end);
        remaining_.remove_prefix(end + label.size());
        return true;
    }

    /// Removes the text before the next valid event id, the id, and the account's label, which must follow
    /// the id.  Stores the text in `field` and the id in `number`.
    bool TakeUntilEventID(std::string_view& field, std::int32_t& number) {
        std::size_t end = remaining_.find(EventIDLabel);
        for (; end != std::string_view::npos; end = remaining_.find(EventIDLabel, end + 1)) {
            LabelledText after(remaining_.substr(end + EventIDLabel.size()));
            if (after.TakeNumber(number) && after.Begin(AccountLabel)) {
                field = remaining_.substr(0, end);
                remaining_ = after.remaining_;
                return true;
            }
        }
        return false;
    }

    std::string_view Remaining() const { return remaining_; }

private:
    /// Takes a number only if it is written as std::to_string writes it, so neither "042" nor "+42".
    bool TakeNumber(std::int32_t& number) {
        const char* const end =
            std::from_chars(remaining_.data(), remaining_.data() + remaining_.size(), number).ptr;
        const auto length = static_cast<std::size_t>(end - remaining_.data());
        if (length == 0 || remaining_.substr(0, length) != std::to_string(number))
            return false;
        remaining_.remove_prefix(length);
        return true;
    }

    std::string_view remaining_;
};

bool CutMessageText(std::string_view text, MessageFields& fields) {
    LabelledText labelled(text);
    const bool whole = labelled.Begin(DateLabel) && labelled.TakeUntil(NameLabel, fields.Date) &&
                       labelled.TakeUntil(LogTypeLabel, fields.AlarmName) &&
                       labelled.TakeUntil(SourceLabel, fields.LogType) &&
                       labelled.TakeUntil(TypeLabel, fields.Source) &&
                       labelled.TakeUntil(CategoryLabel, fields.TypeOfEvent) &&
                       labelled.TakeUntilEventID(fields.Category, fields.EventID) &&
                       labelled.TakeUntil(ComputerLabel, fields.AccountName) &&
                       labelled.TakeUntil(DescriptionLabel, fields.Computer);
    fields.Description = labelled.Remaining();
    return whole;
}

void SettleType(AlarmRecord& alarm) {
    alarm.TypeOfEvent = EventTypeDisplayName(EventTypeIconKey(alarm.TypeOfEvent));
}

void DropTrailingBlanks(std::string& text) {
    text.erase(text.find_last_not_of(' ') + 1);
}

template <typename Alarm>
auto FieldsBeforeDescription(Alarm& alarm) {
    return std::array{&alarm.AlarmName, &alarm.LogType,     &alarm.Source,  &alarm.TypeOfEvent,
                      &alarm.Category,  &alarm.AccountName, &alarm.Computer};
}

/// Returns whether any of these fields contains a line feed.  Without one, no field can contain a line that
/// looks like a label.
bool HoldsLineFeed(const AlarmRecord& alarm) {
    const auto fields = FieldsBeforeDescription(alarm);
    return std::any_of(fields.begin(), fields.end(),
                       [](const std::string* field) { return field->find('\n') != std::string::npos; });
}

/// Removes `excess` bytes from the end of the description and, when that is empty, from the ends of the other
/// fields, the longest first.
void Shorten(AlarmRecord& alarm, std::size_t excess) {
    std::string* field = &alarm.Description;
    while (excess > 0) {
        const std::size_t taken = std::min(excess, field->size());
        field->resize(field->size() - taken);
        excess -= taken;
        const auto fields = FieldsBeforeDescription(alarm);
        field = *std::max_element(fields.begin(), fields.end(),
                                  [](const auto* a, const auto* b) { return a->size() < b->size(); });
    }
    DropTrailingBlanks(alarm.Description);
}

}  // namespace

std::string BuildMessageText(const AlarmRecord& alarm) {
    std::string text;
    text.reserve(MostBesideFields + alarm.AlarmName.size() + alarm.LogType.size() + alarm.Source.size() +
                 alarm.TypeOfEvent.size() + alarm.Category.size() + alarm.AccountName.size() +
                 alarm.Computer.size() + alarm.Description.size());
    text += DateLabel;
    AppendGeneralDate(text, alarm.DateTime);
    text.append(NameLabel).append(alarm.AlarmName);
    text.append(LogTypeLabel).append(alarm.LogType);
    text.append(SourceLabel).append(alarm.Source);
    text.append(TypeLabel).append(alarm.TypeOfEvent);
    text.append(CategoryLabel).append(alarm.Category);
    text.append(EventIDLabel).append(std::to_string(alarm.EventID));
    text.append(AccountLabel).append(alarm.AccountName);
    text.append(ComputerLabel).append(alarm.Computer);
    text.append(DescriptionLabel).append(alarm.Description);
    return text;
}

bool ReadMessageText(std::string_view text, AlarmRecord& alarm) {
    MessageFields fields;
    // A line end in the date must be refused here, because ReadAlarmDate ignores everything after one.
    if (!CutMessageText(text, fields) || fields.Date.find_first_of("\r\n") != std::string_view::npos ||
        !ReadAlarmDate(fields.Date, alarm.DateTime))
        return false;
    alarm.AlarmName.assign(fields.AlarmName);
    alarm.LogType.assign(fields.LogType);
    alarm.Source.assign(fields.Source);
    alarm.TypeOfEvent.assign(fields.TypeOfEvent);
    alarm.Category.assign(fields.Category);
    alarm.EventID = fields.EventID;
    alarm.AccountName.assign(fields.AccountName);
    alarm.Computer.assign(fields.Computer);
    alarm.Description.assign(fields.Description);
    return true;
}

std::string SettleMessage(AlarmRecord& alarm) {
    SettleType(alarm);
    DropTrailingBlanks(alarm.Description);
    std::string text = BuildMessageText(alarm);
    if (text.size() > LongestMessageText) {
        Shorten(alarm, text.size() - LongestMessageText);
        text = BuildMessageText(alarm);
    }
    if (!HoldsLineFeed(alarm) && text.find('\0') == std::string::npos)
        return text;
    // ReadMessageText may have changed the type, so the type is settled once more.  The other fields keep
    // their limits, because ReadMessageText searches for the labels in their order.
    if (!ReadMessageText(StripNulls(text), alarm))
        return text;
    SettleType(alarm);
    return BuildMessageText(alarm);
}

}  // namespace tallyhorn
