#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

/// Line number `line`, from 1, without its CR LF.
std::string Line(const std::string& text, int line) {
    std::size_t start = 0;
    for (; line > 1; --line)
        start = text.find("\r\n", start) + 2;
    return text.substr(start, text.find("\r\n", start) - start);
}

TEST(DemoFeedTest, IsTheSameForTheSameSeed) {
    DemoFeed one(7);
    DemoFeed same(7);
    DemoFeed other(8);
    int differing = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = one.Next().Text;
        EXPECT_EQ(text, same.Next().Text);
        differing += text != other.Next().Text ? 1 : 0;
    }
    EXPECT_GT(differing, 990);
}

TEST(DemoFeedTest, LooksLikeAnEnginesFeed) {
    constexpr int Texts = 20'000;
    DemoFeed feed(1);
    std::map<DemoType, int> types;
    std::set<std::string> computers;
    std::set<char> characters;
    int typical = 0;
    int inParts = 0;
    for (int i = 0; i < Texts; ++i) {
        const DemoText next = feed.Next();
        const std::string& text = next.Text;
        ++types[next.Type];
        typical += text.size() >= 300 && text.size() <= 390 ? 1 : 0;
        inParts += text.size() > 390 ? 1 : 0;
        characters.insert(text.begin(), text.end());
        ASSERT_EQ(text.rfind("Date: 01/", 0), 0U);
        ASSERT_EQ(text.find("\r\n"), 25U) << "a date of 19 characters";
        ASSERT_NE(Line(text, 4).find('('), std::string::npos);
        for (const auto& [line, label] : {std::pair{7, "Log Type: "},
                                          {9, "Type: "},
                                          {11, "EventID: "},
                                          {13, "Computer: "},
                                          {14, "Description: "}})
            ASSERT_EQ(Line(text, line).rfind(label, 0), 0U) << text;
        const std::string name(DemoTypeNames[static_cast<std::size_t>(next.Type)]);
        ASSERT_TRUE(next.Type == DemoType::Other || Line(text, 9) == "Type: " + name) << text;
        computers.insert(Line(text, 13));
    }
    EXPECT_GT(typical, Texts * 98 / 100);
    EXPECT_GT(inParts, 0);
    EXPECT_LT(inParts, Texts / 200);
    EXPECT_EQ(types.size(), DemoTypeNames.size());
    EXPECT_EQ(
        std::max_element(types.begin(), types.end(), [](auto& a, auto& b) { return a.second < b.second; })
            ->first,
        DemoType::Information);
    EXPECT_GT(computers.size(), 50U);
    for (const char odd : std::string("\t\x07\x1B\x7F\x81\xA0\xFC\xFF<>&\"'%*"))
        EXPECT_TRUE(characters.contains(odd)) << static_cast<int>(odd);
    EXPECT_FALSE(characters.contains('\0'));
}

}  // namespace
}  // namespace tallyhorn
