#include <gtest/gtest.h>

#include "records/EventTypes.h"

namespace tallyhorn {
namespace {

TEST(EventTypes, GiveDisplayNameListAndIcon) {
    const struct {
        const char* Type;
        const char* DisplayName;
        std::int16_t List;
        const char* IconKey;
        std::optional<EventPicture> Picture;
    } cases[] = {
        {"Information", "Information", 2, "information", EventPicture::Information},
        {"WARNING", "Warning", 1, "warning", EventPicture::Warning},
        {"error", "Error", 0, "error", EventPicture::Error},
        {"FAILUREAUDIT", "Failure Audit", 0, "failureaudit", EventPicture::FailureAudit},
        {"SuccessAudit", "Success Audit", 2, "successaudit", EventPicture::SuccessAudit},
        // The display name knows no blanks, the others remove them.
        {"Failure Audit", "Failure Audit", 0, "failureaudit", EventPicture::FailureAudit},
        {"SUCCESS AUDIT", "SUCCESS AUDIT", 2, "successaudit", EventPicture::SuccessAudit},
        {" w a r n i n g ", " w a r n i n g ", 1, "warning", EventPicture::Warning},
        {"", "", 0, "questionmark", EventPicture::QuestionMark},
        {"   ", "   ", 0, "questionmark", EventPicture::QuestionMark},
        {"Critical", "Critical", 0, "critical", std::nullopt},
        {"warning\t", "warning\t", 0, "warning\t", std::nullopt},
        {"\xC9t\xE9", "\xC9t\xE9", 0, "\xE9t\xE9", std::nullopt},
        // What an icon key of the notification before turns into when it is carried over.
        {"questionmark", "questionmark", 0, "questionmark", EventPicture::QuestionMark},
    };
    for (const auto& [type, displayName, list, iconKey, picture] : cases) {
        EXPECT_EQ(EventTypeDisplayName(type), displayName) << type;
        EXPECT_EQ(EventTypeListIndex(type), list) << type;
        EXPECT_EQ(EventTypeIconKey(type), iconKey) << type;
        EXPECT_EQ(PictureForIconKey(iconKey), picture) << type;
    }
}

}  // namespace
}  // namespace tallyhorn
