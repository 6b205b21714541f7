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

template <typename Condition>
const EventType* FindBy(Condition condition) {
    const auto* const found = std::find_if(EventTypeTable.begin(), EventTypeTable.end(), condition);
    return found == EventTypeTable.end() ? nullptr : found;
}

const EventType* FindType(std::string_view key) {
    return FindBy([key](const EventType& type) { return type.Key == key; });
}

const EventType* FindTypeNoCase(std::string_view type) {
    return FindBy([type](const EventType& known) {
        return known.Key.size() == type.size() && CompareNoCase(known.Key, type) == 0;
    });
}

/// A type as the console itself writes it, which nearly every notification has: found without a copy of it.
const EventType* FindWrittenType(std::string_view type) {
    return FindBy([type](const EventType& known) { return known.DisplayName == type || known.Key == type; });
}

std::string WithoutBlanks(std::string_view type) {
    std::string key = RemoveBlanks(type);
    std::transform(key.begin(), key.end(), key.begin(), ToLower);
    return key;
}

}  // namespace

std::string EventTypeDisplayName(std::string_view type) {
    const EventType* const known = FindTypeNoCase(type);
    return std::string(known != nullptr ? known->DisplayName : type);
}

void ShowEventType(std::string& type) {
    if (const EventType* const known = FindTypeNoCase(type))
        type.assign(known->DisplayName);
}

std::int16_t EventTypeListIndex(std::string_view type) {
    return ListForIconKey(WithoutBlanks(type));
}

std::string_view EventTypeKey(EventPicture picture) {
    const EventType* const known =
        FindBy([picture](const EventType& type) { return type.Picture == picture; });
    return known != nullptr ? known->Key : EmptyTypeKey;
}

std::string_view EventTypeName(EventPicture picture) {
    const EventType* const known =
        FindBy([picture](const EventType& type) { return type.Picture == picture; });
    return known != nullptr ? known->DisplayName : EmptyTypeKey;
}

std::int16_t ListForIconKey(std::string_view key) {
    const EventType* const known = FindType(key);
    return known != nullptr ? known->List : CriticalList;
}

std::string EventTypeIconKey(std::string_view type) {
    if (const EventType* const known = FindWrittenType(type))
        return std::string(known->Key);
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
