#include "records/EventTypes.h"

#include <algorithm>
#include <array>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

struct TypeTexts {
    EventType Type;
    std::string_view Key;
    std::string_view DisplayName;
    EventList List;
};

constexpr std::array<TypeTexts, KnownTypeCount> EventTypeTable = {{
    {EventType::Information, "information", "Information", InformationList},
    {EventType::Warning, "warning", "Warning", WarningList},
    {EventType::Error, "error", "Error", CriticalList},
    {EventType::FailureAudit, "failureaudit", "Failure Audit", CriticalList},
    {EventType::SuccessAudit, "successaudit", "Success Audit", InformationList},
}};

constexpr std::string_view EmptyTypeKey = "questionmark";

template <typename Condition>
const TypeTexts* FindBy(Condition condition) {
    const auto* const found = std::find_if(EventTypeTable.begin(), EventTypeTable.end(), condition);
    return found == EventTypeTable.end() ? nullptr : found;
}

const TypeTexts* TextsOf(EventType type) {
    return IsKnown(type) ? &EventTypeTable[static_cast<std::size_t>(type)] : nullptr;
}

const TypeTexts* FindKeyNoCase(std::string_view text) {
    return FindBy([text](const TypeTexts& known) {
        return known.Key.size() == text.size() && CompareNoCase(known.Key, text) == 0;
    });
}

/// Finds a type whose text is exactly a known DisplayName or Key, as in nearly every notification.  Does not
/// copy the text.
const TypeTexts* FindWritten(std::string_view text) {
    return FindBy([text](const TypeTexts& known) { return known.DisplayName == text || known.Key == text; });
}

std::string LowerCaseWithoutBlanks(std::string_view text) {
    std::string key = RemoveBlanks(text);
    std::transform(key.begin(), key.end(), key.begin(), ToLower);
    return key;
}

}  // namespace

EventType EventTypeOf(std::string_view text) {
    if (const TypeTexts* const known = FindWritten(text))
        return known->Type;
    const std::string key = LowerCaseWithoutBlanks(text);
    if (const TypeTexts* const known = FindBy([&key](const TypeTexts& each) { return each.Key == key; }))
        return known->Type;
    return key.empty() || key == EmptyTypeKey ? EventType::None : EventType::Unknown;
}

EventList ListOf(EventType type) {
    const TypeTexts* const known = TextsOf(type);
    return known != nullptr ? known->List : CriticalList;
}

std::string_view EventTypeKey(EventType type) {
    const TypeTexts* const known = TextsOf(type);
    return known != nullptr ? known->Key : EmptyTypeKey;
}

std::string_view EventTypeName(EventType type) {
    const TypeTexts* const known = TextsOf(type);
    return known != nullptr ? known->DisplayName : EmptyTypeKey;
}

std::string EventTypeDisplayName(std::string_view type) {
    const TypeTexts* const known = FindKeyNoCase(type);
    return std::string(known != nullptr ? known->DisplayName : type);
}

void ShowEventType(std::string& type) {
    if (const TypeTexts* const known = FindKeyNoCase(type))
        type.assign(known->DisplayName);
}

std::string EventTypeIconKey(std::string_view type) {
    if (const TypeTexts* const known = FindWritten(type))
        return std::string(known->Key);
    std::string key = LowerCaseWithoutBlanks(type);
    return key.empty() ? std::string(EmptyTypeKey) : key;
}

std::int16_t EventTypeListIndex(std::string_view type) {
    return ListOf(EventTypeOf(type));
}

}  // namespace tallyhorn
