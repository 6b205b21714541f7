#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "storage/ExportFile.h"
#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

class ExportFileTest : public ExportFixture {
protected:
    /// Writes a file with this record and returns its second line.
    std::string LineOf(const AlarmRecord& record) {
        ExportFile file(file_, false);
        EXPECT_TRUE(file.Write(record));
        EXPECT_FALSE(file.Finish());
        const std::string bytes = ReadBytes(file_);
        const std::string header = Header;
        EXPECT_EQ(bytes.substr(0, header.size()), header);
        return bytes.substr(header.size());
    }
    std::string DescriptionOf(const std::string& description) {
        AlarmRecord record = Record("n");
        record.Description = description;
        const std::string before = "08/21/2008 2:05:09 PM,n,System,Disk,Error,None,7,JOE,PC,";
        const std::string line = LineOf(record);
        EXPECT_EQ(line.substr(0, before.size()), before);
        return line.substr(before.size());
    }
};

TEST_F(ExportFileTest, WritesADescriptionOnOneLineInQuotes) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "\"\"\r\n"},
        {"   ", "\"\"\r\n"},
        {"a\r\nb", "\"a b\"\r\n"},
        {"\r\n a\r\n\r\nb \r\n", "\"a  b\"\r\n"},
        {"\r\n\r\n", "\"\"\r\n"},
        {"\ta\t", "\"\ta\t\"\r\n"},
        // CR or LF alone is not a line end.
        {"a\rb\nc\n\rd\r", "\"a\rb\nc\n\rd\r\"\r\n"},
        {"a\r\r\nb", "\"a\r b\"\r\n"},
        {"said \"no\", twice", "\"said \"no\", twice\"\r\n"},
        {"\"", "\"\"\"\r\n"},
        {std::string("a\0b", 3), std::string("\"a\0b\"\r\n", 7)},
    };
    for (const auto& [description, expected] : cases)
        EXPECT_EQ(DescriptionOf(description), expected);
    const std::string longOne(700'000, 'x');
    EXPECT_TRUE(DescriptionOf(longOne) == std::string("\"").append(longOne).append("\"\r\n"));
}

/// A comma in a field therefore shifts the fields behind it.
TEST_F(ExportFileTest, EscapesNothing) {
    std::string text = ",\"x\"=cmd|' /C calc'!A0<b>%n&amp;</b>\r\n";
    for (int i = 255; i >= 0; --i)
        text += static_cast<char>(i);
    EXPECT_EQ(LineOf({Record("").DateTime, text, text, text, text, text, INT32_MIN, text, text, "text"}),
              "08/21/2008 2:05:09 PM," + text + "," + text + "," + text + "," + text + "," + text +
                  ",-2147483648," + text + "," + text + ",\"text\"\r\n");
}

}  // namespace
}  // namespace tallyhorn
