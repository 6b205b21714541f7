#include "records/EventTypes.h"

#include <algorithm>
#include <array>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

struct EventType {
    std::string_view Key;
    std::string_view DisplayName;
    EventList List;
    EventPicture Picture;
};

constexpr std::array<EventType, 5> EventTypeTable = {{
    {"information", "Information", InformationList, EventPicture::Information},
    {"warning", "Warning", WarningList, EventPicture::Warning},
    {"error", "Error", CriticalList, EventPicture::Error},
    {"failureaudit", "Failure Audit", CriticalList, EventPicture::FailureAudit},
    {"successaudit", "Success Audit", InformationList, EventPicture::SuccessAudit},
}};

constexpr std::string_view EmptyTypeKey = "questionmark";

const EventType* FindType(std::string_view key) {
    const auto* const found = std::find_if(EventTypeTable.begin(), EventTypeTable.end(),
                                           [key](const EventType& type) { return type.Key == key; });
    return found == EventTypeTable.end() ? nullptr : found;
}

std::string WithoutBlanks(std::string_view type) {
    std::string key = RemoveBlanks(type);
    std::transform(key.begin(), key.end(), key.begin(), ToLower);
    return key;
}

}  // namespace

std::string EventTypeDisplayName(std::string_view type) {
    const EventType* const known = FindType(LowerCase(type));
    return std::string(known != nullptr ? known->DisplayName : type);
}

std::int16_t EventTypeListIndex(std::string_view type) {
    return ListForIconKey(WithoutBlanks(type));
}

std::int16_t ListForIconKey(std::string_view key) {
    const EventType* const known = FindType(key);
    return known != nullptr ? known->List : CriticalList;
}

std::string EventTypeIconKey(std::string_view type) {
    std::string key = WithoutBlanks(type);
    return key.empty() ? std::string(EmptyTypeKey) : key;
}

std::optional<EventPicture> PictureForIconKey(std::string_view key) {
    if (const EventType* const known = FindType(key))
        return known->Picture;
    if (key == EmptyTypeKey)
        return EventPicture::QuestionMark;
    return std::nullopt;
}

}  // namespace tallyhorn
