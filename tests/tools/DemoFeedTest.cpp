#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

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

/// A datagram cut as its reader cuts it: the name in the first parentheses, and from the colon after them on
/// eight fields that commas end, and the rest.
std::vector<std::string> Cut(const std::string& text) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.find(')', open);
    std::vector<std::string> fields{text.substr(open + 1, close - open - 1)};
    std::size_t start = text.find(':', close) + 1;
    while (fields.size() < 9) {
        const std::size_t comma = text.find(',', start);
        fields.push_back(text.substr(start + 1, comma - start - 1));
        start = comma + 1;
    }
    fields.push_back(text.substr(start + 1));
    return fields;
}

TEST(DemoFeedTest, LooksLikeAnEnginesSyslog) {
    constexpr int Texts = 20'000;
    DemoFeed feed(1);
    DemoFeed same(1);
    const std::regex header(
        R"(<13[1-4]>[JF][ae][nb] [ 123]\d \d\d:\d\d:\d\d TALLYHORN tallyhorn: Alarm raised \()");
    const std::regex date(R"(\d\d?/\d\d?/2026 \d\d?:\d\d:\d\d [AP]M)");
    const std::set<std::string> logs{"System Log", "Application Log", "Security Log",
                                     "Directory Service Log"};
    std::set<DemoType> types;
    std::set<std::string> computers;
    std::set<char> characters;
    int ofSeveralLines = 0;
    for (int i = 0; i < Texts; ++i) {
        const DemoText next = feed.NextSyslog();
        const std::string& text = next.Text;
        ASSERT_EQ(text, same.NextSyslog().Text);
        ASSERT_TRUE(text.size() >= 280 && text.size() < 1500) << text;
        ASSERT_NE(text.find("Event "), std::string::npos);
        ASSERT_TRUE(std::regex_search(text, header, std::regex_constants::match_continuous)) << text;
        const std::vector<std::string> fields = Cut(text);
        ASSERT_TRUE(logs.contains(fields[1])) << text;
        ASSERT_TRUE(std::regex_match(fields[2], date)) << text;
        ASSERT_TRUE(next.Type == DemoType::Other ||
                    fields[4] == DemoTypeNames[static_cast<std::size_t>(next.Type)])
            << text;
        ASSERT_FALSE(fields[6].empty() || fields[6].find_first_not_of("0123456789") != std::string::npos)
            << text;
        types.insert(next.Type);
        computers.insert(fields[8]);
        characters.insert(text.begin(), text.end());
        ofSeveralLines += text.find("\r\n") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(types.size(), DemoTypeNames.size());
    EXPECT_GT(computers.size(), 50U);
    EXPECT_GT(ofSeveralLines, 0);
    EXPECT_LT(ofSeveralLines, Texts / 20);
    for (const char odd : std::string("\t\x07\x1B\x7F\x81\xA0\xFC\xFF<>&\"'%*"))
        EXPECT_TRUE(characters.contains(odd)) << static_cast<int>(odd);
    EXPECT_FALSE(characters.contains('\0'));
}

}  // namespace
}  // namespace tallyhorn
