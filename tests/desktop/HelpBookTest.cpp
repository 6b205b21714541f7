#include <gtest/gtest.h>

#include <set>

#include "desktop/help/HelpBook.h"
#include "desktop/help/HelpTables.h"
#include "platform/HelpViewer.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

/// Checks the help file of this build.
class HelpBookTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (MakeSystemHelpViewer() != nullptr)
            GTEST_SKIP() << "this system reads help files itself";
        // The child that unpacks the file inherits this address space, which must not count against its
        // limit.
        reserved_.reserve(std::size_t{1} << 30U);
        book_ = HelpBook::Open(TALLYHORN_HELP);
        ASSERT_NE(book_, nullptr);
    }

    std::vector<char> reserved_;
    std::unique_ptr<HelpBook> book_;
};

TEST_F(HelpBookTest, EachNumberHasItsOwnPageInTheContents) {
    const std::vector<std::string> pages = book_->Pages();
    EXPECT_GE(pages.size(), 14U);
    for (const std::string& page : pages)
        EXPECT_TRUE(IsModestHtml(book_->Read(page))) << page;
    std::set<std::string> numbered;
    for (const auto& [number, page] : ParseHelpContexts(book_->Read("#IVB"), book_->Read("#STRINGS"))) {
        EXPECT_EQ(book_->PageOf(number), page);
        numbered.insert(page);
    }
    EXPECT_EQ(numbered, std::set(pages.begin(), pages.end()));
    EXPECT_EQ(book_->PageOf(10), "main-window.html");
    EXPECT_EQ(book_->PageOf(12345), book_->StartPage());
    EXPECT_EQ(book_->StartPage(), pages.front());
    EXPECT_EQ(book_->Title(), "Tallyhorn Listener Console Help");
    EXPECT_TRUE(book_->Read("main-window.png").starts_with("\x89PNG"));
}

/// A damaged file may contain any lengths; reading it must end, with a limited number of bytes.
TEST_F(HelpBookTest, DamagedFilesAreReadWithinBoundsOrRefused) {
    const std::string whole = ReadBytes(TALLYHORN_HELP);
    const TemporaryFolder folder;
    const auto bytesRead = [&folder](const std::string& bytes) {
        WriteBytes(folder / "damaged.CHM", bytes);
        const auto book = HelpBook::Open(folder / "damaged.CHM");
        std::size_t read = 0;
        for (const std::string& page : book == nullptr ? std::vector<std::string>() : book->Pages())
            read += book->Read(page).size();
        return read;
    };
    EXPECT_GT(bytesRead(whole), 20'000U);
    const std::size_t size = whole.size();
    for (const std::size_t length : std::vector<std::size_t>{0, 1, 0x37, 0x60, 0x100, size - 5000, size - 1})
        EXPECT_EQ(bytesRead(whole.substr(0, length)), 0U) << length;
    // A directory block that names itself as the next one makes the library unpack files without end.
    EXPECT_EQ(bytesRead(std::string(whole).replace(whole.find("PMGL") + 16, 4, 4, '\0')), 0U);
    constexpr std::size_t MostRead = 16ULL * 1024 * 1024;
    std::mt19937 random(7);
    for (int i = 0; i < 100; ++i) {
        std::string damaged = whole;
        // Most changes hit the headers and the directory, which are at the start of the file.
        const std::size_t end = i % 4 == 0 ? whole.size() : 0x4000;
        for (int change = 0; change < 3; ++change)
            damaged[random() % end] = static_cast<char>(random());
        EXPECT_LE(bytesRead(damaged), MostRead);
    }
    EXPECT_EQ(HelpBook::Open(folder.Path()), nullptr);
    EXPECT_EQ(HelpBook::Open("/dev/zero"), nullptr);
}

/// Cuts each table at every byte; the rest of the table is behind the cut and must not be read.
TEST(HelpTables, NothingIsReadBehindTheEndOfATable) {
    const std::string strings = std::string("a.html\0bc.html\0", 15);
    const std::string numbers = LittleEndian(16, 4) + LittleEndian(10, 4) + LittleEndian(0, 4) +
                                LittleEndian(20, 4) + LittleEndian(7, 4);
    for (std::size_t end = 0; end <= numbers.size(); ++end) {
        const auto pages = ParseHelpContexts(std::string_view(numbers).substr(0, end), strings);
        EXPECT_EQ(pages.size(), end < 12 ? 0U : end < 20 ? 1U : 2U) << end;
    }
    for (std::size_t end = 0; end <= strings.size(); ++end) {
        std::string expected = strings.substr(0, end), pages;
        for (const auto& [number, page] : ParseHelpContexts(numbers, expected))
            pages += page;
        std::erase(expected, '\0');
        EXPECT_EQ(pages, expected) << end;
    }
    const std::string facts = LittleEndian(3, 4) + LittleEndian(2, 2) + LittleEndian(7, 2) +
                              std::string("a.html\0", 7) + LittleEndian(3, 2) + LittleEndian(6, 2) + "Title";
    for (std::size_t end = 0; end <= facts.size(); ++end) {
        const HelpFacts read = ParseHelpFacts(std::string_view(facts).substr(0, end));
        EXPECT_EQ(read.StartPage, std::string("a.html").substr(0, std::max<std::size_t>(end, 8) - 8));
        EXPECT_EQ(read.Title, std::string("Title").substr(0, std::max<std::size_t>(end, 19) - 19));
    }
}

TEST(HelpTables, WhatIsReadIsBounded) {
    const std::string line =
        "<object><param name=\"Name\" value=\"n&amp;m\"><param name=\"Local\" value=\"p\"></object>";
    std::string contents;
    for (int i = 0; i < 100; ++i)
        contents.append("</ul>" + line)
            .append("<UL>" + line)
            .append("<ul><ul><ul><ul><ul><ul><ul><ul><ul>" + line);
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
