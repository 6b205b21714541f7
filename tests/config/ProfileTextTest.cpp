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

/// A change replaces the bytes `From` in the sample by `To` and no others.  Without a value it deletes the
/// key, without a key the section.
TEST(ProfileText, AChangeKeepsAllOtherBytes) {
    const struct {
        const char* Section;
        const char* Key;
        const char* Value;
        const char* From;
        const char* To;
    } cases[] = {{"GENERAL", "soundon", "0", "  SoundOn = 1 \r\n", "  SoundOn =0\r\n"},
                 {"General", "CPWidth", "", "CPWidth=10\n", "CPWidth=\n"},
                 {"General", "WORD", " a ", "word\r", "word= a \r"},
                 {"General", "New", "v", "CPWidth=11\r\n", "CPWidth=11\r\nNew=v\r\n"},
                 {"Other", "y", "2", "x=1", "x=1\r\ny=2\r\n"},
                 {"Third", "z", "3", "x=1", "x=1\r\n[Third]\r\nz=3\r\n"},
                 {"", "head", "4", "; settings", "head=4\r\n; settings"},
                 {"general", "cpwidth", nullptr, "CPWidth=10\n", ""},
                 {"General", "word", nullptr, "word\r", ""},
                 {"Other", "x", nullptr, "x=1", ""},
                 {"Other", "SoundOn", nullptr, "", ""},
                 {"Missing", "x", nullptr, "", ""},
                 {"OTHER", nullptr, nullptr, "[Other]\r\nx=1", ""},
                 {"", nullptr, nullptr, "; settings\r\n\r\n", ""},
                 {"Missing", nullptr, nullptr, "", ""}};
    for (const auto& [section, key, value, from, to] : cases) {
        ProfileText profile(Sample);
        if (key == nullptr)
            profile.DeleteSection(section);
        else if (value == nullptr)
            profile.DeleteKey(section, key);
        else
            profile.SetValue(section, key, value);
        std::string expected = Sample;
        expected.replace(expected.find(from), std::string_view(from).size(), to);
        EXPECT_EQ(profile.Bytes(), expected) << section << ' ' << (key == nullptr ? "" : key);
    }
}

/// With quadratic work on long or many lines, the test would exceed its time limit.
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
