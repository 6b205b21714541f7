#include <gtest/gtest.h>

#include <random>

#include "config/ProfileText.h"

namespace tallyhorn {
namespace {

/// The bytes that mean something to the profile text, and letters with two cases.
constexpr std::string_view Alphabet(
    "[]=;\"' \t\r\n\0\x1A"
    "aAkK\xE4\xC4\xFF",
    19);

constexpr const char* Sample =
    "; settings\r\n"
    "\r\n"
    "[General]\r\n"
    "  SoundOn = 1 \r\n"
    "; why ten\n"
    "CPWidth=10\n"
    "word\r"
    "CPWidth=11\r\n"
    "\r\n"
    "; about the other\r\n"
    "[Other]\r\n"
    "x=1";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST(ProfileText, SettingTouchesOneLine) {
    const struct {
        const char* Section;
        const char* Key;
        const char* Value;
        const char* From;
        const char* To;
    } cases[] = {
        {"GENERAL", "soundon", "0", "  SoundOn = 1 \r\n", "  SoundOn =0\r\n"},
        {"General", "CPWidth", "", "CPWidth=10\n", "CPWidth=\n"},
        {"General", "WORD", " a ", "word\r", "word= a \r"},
        {"General", "New", "v", "CPWidth=11\r\n", "CPWidth=11\r\nNew=v\r\n"},
        {"Other", "y", "2", "x=1", "x=1\r\ny=2\r\n"},
        {"Third", "z", "3", "x=1", "x=1\r\n[Third]\r\nz=3\r\n"},
        {"", "head", "4", "; settings", "head=4\r\n; settings"},
    };
    for (const auto& one : cases) {
        ProfileText profile(Sample);
        profile.SetValue(one.Section, one.Key, one.Value);
        EXPECT_EQ(profile.Bytes(), Replaced(Sample, one.From, one.To)) << one.Section << ' ' << one.Key;
    }
}

TEST(ProfileText, DeletingTakesWholeLinesAndNoOthers) {
    const struct {
        const char* Section;
        const char* Key;
        const char* From;
    } cases[] = {
        {"general", "cpwidth", "CPWidth=10\n"},
        {"General", "word", "word\r"},
        {"Other", "x", "x=1"},
        {"Other", "SoundOn", ""},
        {"Missing", "x", ""},
        {"OTHER", nullptr, "[Other]\r\nx=1"},
        {"", nullptr, "; settings\r\n\r\n"},
        {"Missing", nullptr, ""},
    };
    for (const auto& one : cases) {
        ProfileText profile(Sample);
        if (one.Key != nullptr)
            profile.DeleteKey(one.Section, one.Key);
        else
            profile.DeleteSection(one.Section);
        EXPECT_EQ(profile.Bytes(), Replaced(Sample, one.From, "")) << one.Section;
    }
}

/// Whatever the bytes: what is set is read back, and taking it out again leaves them as they were but for the
/// line end that the last line may have lacked.
TEST(ProfileText, RandomBytesComeThroughUnharmed) {
    const std::string newEntry("new \xE4='value'\0", 14);
    std::mt19937 engine(7);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (std::size_t length = engine() % 80; length > 0; --length)
            bytes += engine() % 8 == 0 ? static_cast<char>(engine()) : Alphabet[engine() % Alphabet.size()];
        for (const char* section : {"", "k", "\xE4 new"}) {
            ProfileText profile(bytes);
            const std::string names = profile.SectionNames();
            const std::string entries = profile.Entries(section);
            profile.SetValue(section, "new \xE4", " 'value'");
            EXPECT_EQ(profile.Value(section, "NEW \xC4"), "value");
            EXPECT_EQ(profile.Entries(section), entries + newEntry);
            if (profile.SectionNames() == names)
                profile.DeleteKey(section, "NEW \xC4");
            else
                profile.DeleteSection(section);
            const std::string& after = profile.Bytes();
            ASSERT_TRUE(after.starts_with(bytes)) << ::testing::PrintToString(bytes);
            const std::string_view rest = std::string_view(after).substr(bytes.size());
            EXPECT_TRUE(rest.empty() || rest == "\r\n") << ::testing::PrintToString(bytes);
        }
    }
}

/// Long lines and many of them; quadratic work would not come back within the test's time limit.
TEST(ProfileText, WorkIsLinear) {
    std::string bytes = "[s]\n" + std::string(4U << 20U, '[') + '\n' + std::string(4U << 20U, ' ');
    for (int i = 0; i < 500000; ++i)
        bytes += "\r[x";
    ProfileText profile(bytes);
    profile.SetValue("s", "k", "v");
    EXPECT_EQ(profile.Value("s", "k"), "v");
    EXPECT_EQ(profile.SectionNames(), std::string("s\0", 2));
    profile.DeleteSection("s");
    EXPECT_EQ(profile.Bytes(), "");
}

}  // namespace
}  // namespace tallyhorn
