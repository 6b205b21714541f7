#include <gtest/gtest.h>

#include <tuple>

#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

TEST(EventTypes, GiveDisplayNameListAndIcon) {
    const std::tuple<std::string, std::string, int, std::string, EventType> cases[] = {
        {"Information", "Information", 2, "information", EventType::Information},
        {"WARNING", "Warning", 1, "warning", EventType::Warning},
        {"error", "Error", 0, "error", EventType::Error},
        {"FAILUREAUDIT", "Failure Audit", 0, "failureaudit", EventType::FailureAudit},
        {"SuccessAudit", "Success Audit", 2, "successaudit", EventType::SuccessAudit},
        // Blanks matter for the display name only.
        {"Failure Audit", "Failure Audit", 0, "failureaudit", EventType::FailureAudit},
        {"SUCCESS AUDIT", "SUCCESS AUDIT", 2, "successaudit", EventType::SuccessAudit},
        {" w a r n i n g ", " w a r n i n g ", 1, "warning", EventType::Warning},
        {"", "", 0, "questionmark", EventType::None},
        {"   ", "   ", 0, "questionmark", EventType::None},
        {"Critical", "Critical", 0, "critical", EventType::Unknown},
        {"warning\t", "warning\t", 0, "warning\t", EventType::Unknown},
        {"\xC9t\xE9", "\xC9t\xE9", 0, "\xE9t\xE9", EventType::Unknown},
    };
    for (const auto& [text, displayName, list, iconKey, type] : cases) {
        EXPECT_EQ(EventTypeDisplayName(text), displayName) << text;
        EXPECT_EQ(EventTypeListIndex(text), list) << text;
        EXPECT_EQ(EventTypeIconKey(text), iconKey) << text;
        EXPECT_EQ(EventTypeOf(text), type) << text;
        EXPECT_EQ(EventTypeOf(iconKey), type) << text << ", carried over as an icon key";
    }
}

}  // namespace
}  // namespace tallyhorn
