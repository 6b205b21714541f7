#include <gtest/gtest.h>

#include "config/ProfileText.h"

namespace tallyhorn {
namespace {

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
