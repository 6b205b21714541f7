#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

// What a notification's free type text becomes in the views.  Pure functions, safe in any thread.

/// The six pictures that stand beside rows, in the order of the image list.
enum class EventPicture : std::uint8_t {
    Information,
    Warning,
    Error,
    FailureAudit,
    SuccessAudit,
    QuestionMark
};
constexpr std::size_t EventPictureCount = 6;

/// The lists of a channel, each with its own index; the screen shows them in the opposite order.
enum EventList : std::int16_t { CriticalList = 0, WarningList = 1, InformationList = 2 };
constexpr int EventListCount = 3;

/// "Failure Audit" for "FAILUREAUDIT" and so on; any other text comes back unchanged, one with a blank in it
/// included, since blanks count here (and do not in the two below).
std::string EventTypeDisplayName(std::string_view type);
/// The same in place.
void ShowEventType(std::string& type);

/// The list that shows the type; CriticalList for every unknown one, so that nothing is overlooked.
std::int16_t EventTypeListIndex(std::string_view type);

/// The type in lower case without blanks, "questionmark" for an empty one.
std::string EventTypeIconKey(std::string_view type);

/// "failureaudit" and "Failure Audit" for the picture of that type; "questionmark" for the one of no type.
std::string_view EventTypeKey(EventPicture picture);
std::string_view EventTypeName(EventPicture picture);

/// The list that shows the type under an icon key, the same as for the type itself.
std::int16_t ListForIconKey(std::string_view key);
/// The picture under an icon key; nothing for a key that the image list lacks.
std::optional<EventPicture> PictureForIconKey(std::string_view key);

}  // namespace tallyhorn
