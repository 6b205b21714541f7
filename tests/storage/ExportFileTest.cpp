#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "storage/ExportFile.h"
#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

class ExportFileTest : public ExportFixture {
protected:
    /// Writes a file with this record and returns what follows the header.
    std::string LineOf(const AlarmRecord& record) {
        ExportFile file(file_, false);
        EXPECT_TRUE(file.Write(record));
        EXPECT_FALSE(file.Finish());
        const std::string bytes = ReadBytes(file_);
        EXPECT_TRUE(bytes.starts_with(Header)) << bytes;
        return bytes.substr(std::strlen(Header));
    }
};

TEST_F(ExportFileTest, WritesADescriptionOnOneLineInQuotes) {
    const std::string longOne(700'000, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"   ", ""},
        {"\r\n a\r\n\r\nb \r\n", "a  b"},
        {"\r\n\r\n", ""},
        {"\ta\t", "\ta\t"},
        {"a\rb\nc\n\rd\r", "a b c  d"},
        {"a\r\r\nb", "a  b"},
        {"said \"no\", twice", "said \"no\", twice"},
        {std::string("a\0b", 3), std::string("a\0b", 3)},
        {longOne, longOne},
    };
    for (const auto& [description, expected] : cases) {
        const std::string line = LineOf(RecordOf({.Name = "n", .Description = description}));
        EXPECT_TRUE(line ==
                    "08/21/2008 2:05:09 PM,n,System,Disk,Error,None,7,JOE,PC,\"" + expected + "\"\r\n")
            << line.substr(0, 100);
    }
}

/// Nothing but line ends is replaced, so a comma in a field shifts the fields behind it.
TEST_F(ExportFileTest, EscapesNothing) {
    std::string text = ",\"x\"=cmd|' /C calc'!A0<b>%n&amp;</b>\r\n";
    for (int i = 255; i >= 0; --i)
        text += static_cast<char>(i);
    const AlarmRecord record{Record("").DateTime, text, text, text,  text, text,
                             INT32_MIN,           text, text, "text"};
    text.erase(text.find('\r'), 1);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    EXPECT_EQ(LineOf(record), "08/21/2008 2:05:09 PM," + text + "," + text + "," + text + "," + text + "," +
                                  text + ",-2147483648," + text + "," + text + ",\"text\"\r\n");
}

}  // namespace
}  // namespace tallyhorn
