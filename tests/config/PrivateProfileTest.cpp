#include <gmock/gmock.h>

#include "config/PrivateProfile.h"
#include "config/Settings.h"
#include "config/TextProfileFunctions.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A PrivateProfile over the profile functions that the console uses on this system.
class PrivateProfileTest : public ::testing::Test {
protected:
    PrivateProfileTest() { profile_.SetINIFileName(path_.string()); }

    void Fill(const std::string& bytes) { WriteBytes(path_, bytes); }
    std::string Text(const std::string& section, const std::string& key) {
        std::string value = "before";
        const bool found = profile_.GetStringValue(section, key, value);
        EXPECT_EQ(found, !value.empty());
        return value;
    }
    std::int32_t Number(const std::string& key, std::int32_t number) {
        EXPECT_TRUE(profile_.GetIntValue("s", key, number));
        return number;
    }
    std::vector<std::string> Entries(const std::string& section) {
        std::vector<std::string> entries{"before"};
        EXPECT_FALSE(profile_.GetEntries(section, entries));
        EXPECT_EQ(profile_.GetNumEntriesInSection(section), static_cast<std::int32_t>(entries.size()));
        return entries;
    }

    const TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "thlisten.ini";
    const std::unique_ptr<ProfileFunctions> functions_ = MakeProfileFunctions();
    FakeClock clock_;
    PrivateProfile profile_{*functions_, clock_};
};

TEST_F(PrivateProfileTest, ReadsDefaultsFromAMissingFileAndCreatesItByWriting) {
    EXPECT_EQ(Text("s", "k"), "");
    EXPECT_EQ(Number("k", -3), -3);
    EXPECT_THAT(Entries("s"), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_TRUE(profile_.WriteString("s", "k", "-7x"));
    EXPECT_EQ(Text("S", "K"), "-7x");
    EXPECT_EQ(Number("k", 5), -7);
    EXPECT_EQ(ReadBytes(path_), "[s]\r\nk=-7x\r\n");
    for (const std::size_t length : {509U, 510U, 511U, 512U, 600U}) {
        const std::string value(length, 'v');
        EXPECT_TRUE(profile_.WriteString("s", "k", value));
        EXPECT_EQ(Text("s", "k"), length <= 509 ? value : "") << length;
    }
}

TEST_F(PrivateProfileTest, ListsKeysAndEntriesAndDeletes) {
    Fill("[s]\r\na=1\r\n; no\r\nword\r\nb=2=3\r\n[empty]\r\n[t]\r\nc=3\r\n");
    std::vector<std::string> keys;
    EXPECT_FALSE(profile_.GetKeyNames("s", keys));
    EXPECT_THAT(keys, ElementsAre("a", "word", "b"));
    EXPECT_THAT(Entries("s"), ElementsAre("a=1", "word", "b=2=3"));
    EXPECT_FALSE(profile_.GetKeyNames("empty", keys));
    EXPECT_THAT(keys, IsEmpty());
    EXPECT_TRUE(profile_.DeleteKey("s", "a"));
    EXPECT_THAT(Entries("s"), ElementsAre("word", "b=2=3"));
    EXPECT_TRUE(profile_.DeleteSection("s"));
    EXPECT_EQ(Text("s", "b") + Text("t", "c"), "3");
    EXPECT_TRUE(profile_.CreateINIFile());
    EXPECT_EQ(std::filesystem::file_size(path_), 0U);
    profile_.SetINIFileName(folder_ / "thlisten.ini/below");
    EXPECT_FALSE(profile_.CreateINIFile());
}

/// Six lines of 681 characters take, with their NULs, 4,092 of the 4,093 characters that are read.
TEST_F(PrivateProfileTest, OmitsTheLinesThatDoNotFitIntoTheBuffer) {
    std::string bytes = "[s]\r\n";
    for (char name = 'a'; name <= 'f'; ++name)
        bytes += std::string{name, '='} + std::string(679, 'v') + "\r\n";
    Fill(bytes + "g=1\r\nh=2\r\n");
    EXPECT_THAT(Entries("s"), ::testing::SizeIs(6));
    EXPECT_EQ(Entries("s").back(), "f=" + std::string(679, 'v'));
}

TEST_F(PrivateProfileTest, ListsSectionNamesOfUpTo32767BytesWithinTwoSeconds) {
    std::string bytes;
    for (int i = 0; i < 5000; ++i) {
        bytes += "[section" + std::to_string(i) + "]\r\n";
        if (i == 299)
            Fill(bytes);
    }
    std::vector<std::string> names;
    EXPECT_TRUE(profile_.GetSectionNames(names));
    ASSERT_EQ(names.size(), 300U);
    EXPECT_EQ(names[299], "section299");
    EXPECT_EQ(clock_.Slept.count(), 0);
    Fill(bytes);
    EXPECT_FALSE(profile_.GetSectionNames(names));
    EXPECT_EQ(names.size(), 300U) << "a failure does not change the list";
    Fill("[" + std::string(300, 'a') + "]\r\n[b]\r\n");
    clock_.PerLook = std::chrono::seconds(2);
    EXPECT_TRUE(profile_.GetSectionNames(names));
    EXPECT_THAT(names, IsEmpty()) << "no time is left for a buffer that holds the first name";
    Fill("k=v\r\n");
    clock_.PerLook = {};
    const Clock::TimePoint start = clock_.Now();
    names = {"old"};
    EXPECT_TRUE(profile_.GetSectionNames(names));
    EXPECT_THAT(names, IsEmpty());
    EXPECT_EQ(clock_.Now() - start, std::chrono::seconds(2)) << "the call waits for a section";
}

TEST(PrivateProfile, ExceptionsOfTheProfileFunctionsBecomeFailures) {
    class Exhausted final : public TextProfileFunctions {
        std::uint32_t GetPrivateProfileString(const char*, const char*, const char*, char*, std::uint32_t,
                                              const char*) override {
            throw std::bad_alloc();
        }
    } functions;
    FakeClock clock;
    std::string text = "before";
    EXPECT_FALSE(PrivateProfile(functions, clock).GetStringValue("s", "k", text));
    EXPECT_EQ(text, "");
}

TEST_F(PrivateProfileTest, SettingsAreReadWithTheirDefaultsAndOnlySizesAreWrittenBack) {
    EXPECT_EQ(ReadSettings(profile_), Settings());
    Fill(
        "[General]\r\nDateTime=7\r\nSeperator=.\r\nCPHeight=600\r\nCPWidth=800\r\nColWidth1=1\r\n"
        "ColWidth2=2\r\nColWidth4=4\r\nColWidth5=5\r\nSoundOn=1\r\nMessageViews=5\r\n"
        "[Other]\r\nColWidth3=9\r\n");
    EXPECT_EQ(ReadSettings(profile_), (Settings{7, ".", 800, 600, {1, 2, 0, 4, 5}, true, 5}));
    WriteSizes(profile_, {8, "!", 1024, 768, {10, 0, 30, 40, 50}, false, 1});
    EXPECT_EQ(ReadSettings(profile_), (Settings{7, ".", 1024, 768, {10, 0, 30, 40, 50}, true, 5}));
}

}  // namespace
}  // namespace tallyhorn
