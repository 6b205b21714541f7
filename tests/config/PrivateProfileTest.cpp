#include <gmock/gmock.h>

#include "config/MakeProfileFunctions.h"
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

/// The class over each back end that the system has.
class PrivateProfileTest : public ::testing::TestWithParam<const char*> {
protected:
    PrivateProfileTest() { profile_.SetINIFileName(path_.string()); }

    void Fill(const std::string& bytes) { WriteBytes(path_, bytes); }
    std::string Text(const std::string& section, const std::string& key) {
        std::string value = "before";
        const bool read = profile_.GetStringValue(section, key, value);
        EXPECT_EQ(read, !value.empty());
        return value;
    }
    std::int32_t Number(const std::string& key, std::int32_t number) {
        EXPECT_TRUE(profile_.GetIntValue("s", key, number));
        return number;
    }

    const TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "thlisten.ini";
    const std::unique_ptr<ProfileFunctions> functions_ =
        GetParam() == std::string("text") ? std::make_unique<TextProfileFunctions>() : MakeProfileFunctions();
    FakeClock clock_;
    PrivateProfile profile_{*functions_, clock_};
};

INSTANTIATE_TEST_SUITE_P(BackEnds, PrivateProfileTest, ::testing::Values("text", "system"),
                         [](const auto& backEnd) { return std::string(backEnd.param); });

TEST_P(PrivateProfileTest, MissingFileGivesDefaultsAndIsMadeByWriting) {
    EXPECT_EQ(Text("s", "k"), "");
    EXPECT_EQ(Number("k", -3), -3);
    EXPECT_EQ(profile_.GetNumEntriesInSection("s"), 0);
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_TRUE(profile_.WriteString("s", "k", "v"));
    EXPECT_EQ(Text("S", "K"), "v");
    EXPECT_EQ(ReadBytes(path_), "[s]\r\nk=v\r\n");
}

TEST_P(PrivateProfileTest, ValuesUpTo509Characters) {
    for (const std::size_t length : {1U, 509U, 510U, 511U, 512U, 600U}) {
        const std::string value(length, 'v');
        EXPECT_TRUE(profile_.WriteString("s", "k", value));
        EXPECT_EQ(Text("s", "k"), length <= 509 ? value : "") << length;
    }
}

TEST_P(PrivateProfileTest, IntegersHaveASign) {
    Fill("[s]\r\nneg=-7x\r\nwrap=4294967295\r\n");
    EXPECT_EQ(Number("neg", 5), -7);
    EXPECT_EQ(Number("wrap", 5), -1);
}

TEST_P(PrivateProfileTest, ListsKeysAndEntries) {
    Fill("[s]\r\na=1\r\n; no\r\nword\r\nb=2=3\r\n[empty]\r\n");
    std::vector<std::string> list;
    EXPECT_FALSE(profile_.GetKeyNames("s", list));
    EXPECT_THAT(list, ElementsAre("a", "word", "b"));
    EXPECT_FALSE(profile_.GetEntries("s", list));
    EXPECT_THAT(list, ElementsAre("a=1", "word", "b=2=3"));
    EXPECT_EQ(profile_.GetNumEntriesInSection("s"), 3);
    EXPECT_FALSE(profile_.GetKeyNames("empty", list));
    EXPECT_THAT(list, IsEmpty());
    EXPECT_EQ(profile_.GetNumEntriesInSection("none"), 0);
}

/// Six lines of 681 characters and their NULs make 4,092; the last line is read whole only up to the 4,093rd.
TEST_P(PrivateProfileTest, SectionsBeyondTheBufferLoseTheLineThatIsCut) {
    std::string bytes = "[s]\r\n";
    for (char name = 'a'; name <= 'f'; ++name)
        bytes += std::string{name, '='} + std::string(679, 'v') + "\r\n";
    Fill(bytes + "g=1\r\nh=2\r\n");
    EXPECT_EQ(profile_.GetNumEntriesInSection("s"), 6);
    std::vector<std::string> entries;
    profile_.GetEntries("s", entries);
    ASSERT_EQ(entries.size(), 6U);
    EXPECT_EQ(entries[5], "f=" + std::string(679, 'v'));
}

TEST_P(PrivateProfileTest, SectionNamesOutgrowTheFirstBuffersUpToSixteenBits) {
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
    EXPECT_EQ(names.size(), 300U) << "a failure leaves the list";
}

TEST_P(PrivateProfileTest, SectionNamesStopGrowingWhenTimeIsUp) {
    Fill("[" + std::string(300, 'a') + "]\r\n[b]\r\n");
    clock_.PerLook = std::chrono::seconds(2);
    std::vector<std::string> names;
    EXPECT_TRUE(profile_.GetSectionNames(names));
    EXPECT_THAT(names, IsEmpty()) << "the one name in the first buffer is cut";
}

TEST_P(PrivateProfileTest, NoSectionsAreWaitedForTwoSeconds) {
    Fill("k=v\r\n");
    const Clock::TimePoint start = clock_.Now();
    std::vector<std::string> names{"old"};
    EXPECT_TRUE(profile_.GetSectionNames(names));
    EXPECT_THAT(names, IsEmpty());
    EXPECT_EQ(clock_.Now() - start, std::chrono::seconds(2));
}

TEST_P(PrivateProfileTest, DeletesAndEmpties) {
    Fill("[s]\r\na=1\r\nb=2\r\n[t]\r\nc=3\r\n");
    EXPECT_TRUE(profile_.DeleteKey("s", "a"));
    EXPECT_EQ(Text("s", "a") + Text("s", "b"), "2");
    EXPECT_TRUE(profile_.DeleteSection("s"));
    EXPECT_EQ(Text("s", "b") + Text("t", "c"), "3");
    EXPECT_TRUE(profile_.CreateINIFile());
    EXPECT_EQ(std::filesystem::file_size(path_), 0U);
    profile_.SetINIFileName(folder_ / "thlisten.ini/below");
    EXPECT_FALSE(profile_.CreateINIFile());
}

/// Whatever the port throws ends in the results.
TEST(PrivateProfile, NothingIsThrown) {
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

TEST_P(PrivateProfileTest, SettingsAreReadWithTheirDefaults) {
    EXPECT_EQ(ReadSettings(profile_), Settings());
    Fill(
        "[General]\r\nDateTime=7\r\nSeperator=.\r\nCPHeight=600\r\nCPWidth=800\r\nColWidth1=1\r\n"
        "ColWidth2=2\r\nColWidth4=4\r\nColWidth5=5\r\nSoundOn=1\r\nMessageViews=5\r\n"
        "[Other]\r\nColWidth3=9\r\n");
    EXPECT_EQ(ReadSettings(profile_), (Settings{7, ".", 800, 600, {1, 2, 0, 4, 5}, true, 5}));
    for (const char* off : {"0", "2", "on", "-1"}) {
        profile_.WriteString("General", "SoundOn", off);
        EXPECT_FALSE(ReadSettings(profile_).SoundOn) << off;
    }
}

TEST_P(PrivateProfileTest, SizesAreWrittenAndNothingElse) {
    Fill("[General]\r\nSeperator=-\r\nCPWidth=1\r\n");
    WriteSizes(profile_, {7, "!", 1024, 768, {10, 0, 30, 40, 50}, true, 5});
    std::vector<std::string> entries;
    profile_.GetEntries("General", entries);
    EXPECT_THAT(entries, ElementsAre("Seperator=-", "CPWidth=1024", "CPHeight=768", "ColWidth1=10",
                                     "ColWidth2=0", "ColWidth3=30", "ColWidth4=40", "ColWidth5=50"));
}

}  // namespace
}  // namespace tallyhorn
