#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallyhorn {

// The types of event that a notification may name, and what the views show for each type.  All functions are
// pure, and safe in any thread.

/// The type of event that the text `AlarmRecord::TypeOfEvent` names.  A message's type is determined once,
/// when its row is added; the views, the tree and the filters compare this value instead of the text.
enum class EventType : std::uint8_t {
    Information,
    Warning,
    Error,
    FailureAudit,
    SuccessAudit,
    None,    ///< an empty text
    Unknown  ///< any other text
};
/// Each type before `Unknown` has a picture, in the order of the image list.
constexpr std::size_t EventPictureCount = 6;
/// The first five types are those of the Windows event log.
constexpr std::size_t KnownTypeCount = 5;

constexpr bool HasPicture(EventType type) {
    return type != EventType::Unknown;
}
/// Returns whether `type` is one of the event log's five types.
constexpr bool IsKnown(EventType type) {
    return static_cast<std::size_t>(type) < KnownTypeCount;
}

/// The indexes of a channel's lists.  The screen shows the lists in the opposite order.
enum EventList : std::int16_t { CriticalList = 0, WarningList = 1, InformationList = 2 };
constexpr int EventListCount = 3;

/// Returns the type that `text` names, ignoring case and blanks: "Failure Audit", "failureaudit" and
/// "FAILURE  AUDIT" are all FailureAudit.
EventType EventTypeOf(std::string_view text);

/// Returns the list that shows messages of the type.  None and Unknown go to the critical list, so that
/// nobody overlooks them.
EventList ListOf(EventType type);
/// Returns "failureaudit" for FailureAudit and so on; "questionmark" for None and Unknown.
std::string_view EventTypeKey(EventType type);
/// Returns "Failure Audit" for FailureAudit and so on; "questionmark" for None and Unknown.
std::string_view EventTypeName(EventType type);

/// Returns "Failure Audit" for "FAILUREAUDIT" and so on, and any other text unchanged.  Unlike EventTypeOf,
/// does not ignore blanks: "failure audit" is returned unchanged.
std::string EventTypeDisplayName(std::string_view type);
/// Replaces `type` by its EventTypeDisplayName.
void ShowEventType(std::string& type);

/// Returns the type's text in lower case without blanks, or "questionmark" for an empty text.  For an unknown
/// type, the result is a key for which there is no picture.
std::string EventTypeIconKey(std::string_view type);
/// Returns ListOf(EventTypeOf(type)).
std::int16_t EventTypeListIndex(std::string_view type);

}  // namespace tallyhorn
