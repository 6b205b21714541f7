#include <gtest/gtest.h>

#include <array>

#include "config/ProfileText.h"
#include "tests/support/Cases.h"

namespace tallyhorn {
namespace {

constexpr const char* Sample =
    "; settings\r\n\r\n[General]\r\n  SoundOn = 1 \r\n; why ten\nCPWidth=10\nword\rCPWidth=11\r\n\r\n"
    "; about the other\r\n[Other]\r\nx=1";

/// A change, "section|key|value", must replace the bytes `from` in the sample by `to` and leave all others.
/// Without a value it deletes the key, without a key the section.
TEST(ProfileText, AChangeKeepsAllOtherBytes) {
    const std::array<const char*, 3> cases[] = {
        {"GENERAL|soundon|0", "  SoundOn = 1 \r\n", "  SoundOn =0\r\n"},
        {"General|CPWidth|", "CPWidth=10\n", "CPWidth=\n"},
        {"General|WORD| a ", "word\r", "word= a \r"},
        {"General|New|v", "CPWidth=11\r\n", "CPWidth=11\r\nNew=v\r\n"},
        {"Other|y|2", "x=1", "x=1\r\ny=2\r\n"},
        {"Third|z|3", "x=1", "x=1\r\n[Third]\r\nz=3\r\n"},
        {"|head|4", "; settings", "head=4\r\n; settings"},
        {"general|cpwidth", "CPWidth=10\n", ""},
        {"General|word", "word\r", ""},
        {"Other|x", "x=1", ""},
        {"Other|SoundOn", "", ""},
        {"Missing|x", "", ""},
        {"OTHER", "[Other]\r\nx=1", ""},
        {"", "; settings\r\n\r\n", ""},
        {"Missing", "", ""}};
    for (const auto& [change, from, to] : cases) {
        ProfileText profile(Sample);
        const std::vector<std::string> names = SplitAtBars(change);
        if (names.size() == 1)
            profile.DeleteSection(names[0]);
        else if (names.size() == 2)
            profile.DeleteKey(names[0], names[1]);
        else
            profile.SetValue(names[0], names[1], names[2]);
        std::string expected = Sample;
        expected.replace(expected.find(from), std::string_view(from).size(), to);
        EXPECT_EQ(profile.Bytes(), expected) << change;
    }
}

/// If the work grew with the square of the lines' length or number, the test would exceed its time limit.
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
