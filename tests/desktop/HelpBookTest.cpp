#include <gtest/gtest.h>

#include <random>
#include <set>

#include "desktop/help/HelpBook.h"
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
        book_ = HelpBook::Open(TALLYHORN_HELP);
        ASSERT_NE(book_, nullptr);
    }

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

/// A damaged file may give any lengths; reading it must end with a bounded result.
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
    for (const std::size_t length : {0U, 1U, 0x37U, 0x60U, 0x100U})
        EXPECT_EQ(bytesRead(whole.substr(0, length)), 0U) << length;
    constexpr std::size_t MostRead = 16ULL * 1024 * 1024;
    std::mt19937 random(7);
    for (int i = 0; i < 100; ++i) {
        std::string damaged = whole;
        // The headers and the directory are at the start.
        const std::size_t end = i % 4 == 0 ? whole.size() : 0x4000;
        for (int change = 0; change < 3; ++change)
            damaged[random() % end] = static_cast<char>(random());
        EXPECT_LE(bytesRead(damaged), MostRead);
    }
    EXPECT_EQ(HelpBook::Open(folder.Path()), nullptr);
    EXPECT_EQ(HelpBook::Open("/dev/zero"), nullptr);
}

}  // namespace
}  // namespace tallyhorn
