#include <gtest/gtest.h>

#include "desktop/help/HelpTables.h"
#include "tests/support/FileBytes.h"

namespace tallyhorn {
namespace {

/// Each table is cut at every byte, in front of bytes that would be read as more of it.
TEST(HelpTables, NothingIsReadBehindTheEndOfATable) {
    const std::string strings = std::string("a.html\0bc.html\0", 15);
    const std::string numbers = LittleEndian(16, 4) + LittleEndian(10, 4) + LittleEndian(0, 4) +
                                LittleEndian(20, 4) + LittleEndian(7, 4);
    for (std::size_t end = 0; end <= numbers.size(); ++end) {
        const auto pages = ParseHelpContexts(std::string_view(numbers).substr(0, end), strings);
        EXPECT_EQ(pages.size(), end < 12 ? 0U : end < 20 ? 1U : 2U) << end;
    }
    for (std::size_t end = 0; end <= strings.size(); ++end) {
        std::map<std::uint32_t, std::string> expected;
        if (end > 0)
            expected[10] = std::string("a.html").substr(0, end);
        if (end > 7)
            expected[20] = std::string("bc.html").substr(0, end - 7);
        EXPECT_EQ(ParseHelpContexts(numbers, std::string_view(strings).substr(0, end)), expected) << end;
    }
    const std::string facts = LittleEndian(3, 4) + LittleEndian(2, 2) + LittleEndian(7, 2) +
                              std::string("a.html\0", 7) + LittleEndian(3, 2) + LittleEndian(6, 2) + "Title";
    for (std::size_t end = 0; end <= facts.size(); ++end) {
        const HelpFacts read = ParseHelpFacts(std::string_view(facts).substr(0, end));
        EXPECT_EQ(read.StartPage, end <= 8 ? "" : std::string("a.html").substr(0, end - 8)) << end;
        EXPECT_EQ(read.Title, end <= 19 ? "" : std::string("Title").substr(0, end - 19)) << end;
    }
}

TEST(HelpTables, WhatIsReadIsBounded) {
    const std::string line =
        "<object><param name=\"Name\" value=\"n&amp;m\"><param name=\"Local\" value=\"p\"></object>";
    std::string contents;
    for (int i = 0; i < 100; ++i)
        contents += "</ul>" + line + "<UL>" + line + "<ul><ul><ul><ul><ul><ul><ul><ul><ul>" + line;
    std::string numbers = LittleEndian(0, 4);
    for (std::size_t i = 0; i <= MostHelpEntries; ++i) {
        contents += line;
        numbers += LittleEndian(static_cast<std::uint32_t>(i), 4) + LittleEndian(0, 4);
    }
    const std::vector<HelpEntry> entries = ParseHelpContents(contents);
    ASSERT_EQ(entries.size(), MostHelpEntries);
    EXPECT_EQ(entries[0].Depth, 0);
    EXPECT_EQ(entries[2].Depth, DeepestHelpEntry);
    EXPECT_EQ(entries[3].Depth, DeepestHelpEntry - 1);
    EXPECT_EQ(entries[2].Name + entries[2].Local, "n&mp");
    EXPECT_EQ(ParseHelpContexts(numbers, std::string(1000, 'p')).size(), MostHelpEntries);
    EXPECT_EQ(ParseHelpContexts(numbers, std::string(1000, 'p')).begin()->second, std::string(300, 'p'));
    for (const char* const cut :
         {"<object><param name=\"Name\" value=\"n\">", "<object><param name=\"Name",
          "<object><param name=\"Name\"></object>", "<object", "<param name=\"Name\" value=\"n"})
        EXPECT_TRUE(ParseHelpContents(cut).empty()) << cut;
}

TEST(HelpTables, OnlyModestPagesAreLaidOut) {
    const std::pair<std::string, bool> pages[] = {
        {"<table><tr><td width=\"9999\">2123456789</td></tr></table>", true},
        {"<td colspan=\"99999\">", false},
        {"<table><table><table><table></table>", true},
        {"<table><table><table><table><table>", false},
        {"<table></table><table></table><table></table><table></table><table></table>", true}};
    for (const auto& [html, modest] : pages)
        EXPECT_EQ(IsModestHtml(html), modest) << html;
}

}  // namespace
}  // namespace tallyhorn
