// Writes tests/data/profile-cases.tsv: profile files with all their oddities, and what the profile functions
// of the system that this runs on make of them.  Usage: make-profile-cases FILE [SEED]

#include <initializer_list>
#include <iostream>
#include <random>

#include "tests/data/ProfileCase.h"
#include "tests/fakes/TemporaryFolder.h"

namespace {

using tallyhorn::ProfileCase;
using Text = std::optional<std::string>;

constexpr std::int32_t BufferSize = 256;
constexpr std::size_t DrawnCases = 400;

/// The same numbers on every system, unlike the standard library's distributions.
class Draw {
public:
    explicit Draw(unsigned seed) : engine_(seed) {}
    std::size_t Below(std::size_t limit) { return engine_() % limit; }
    std::string OneOf(std::initializer_list<std::string_view> texts) {
        return std::string(texts.begin()[Below(texts.size())]);
    }

private:
    std::mt19937 engine_;
};

using namespace std::string_view_literals;

constexpr std::string_view Letters = "kKsS01x-=[];\"' \t\v\f\x1A\r\n\xE9\xA0"sv;

ProfileCase StringCase(std::string content, Text section, Text key, Text text = "DEF",
                       std::int32_t size = BufferSize) {
    return {std::move(content), "string", std::move(section), std::move(key), std::move(text), size, ""};
}

ProfileCase IntCase(std::string content, Text section, Text key, std::int32_t number = 77) {
    return {std::move(content), "int", std::move(section), std::move(key), std::nullopt, number, ""};
}

ProfileCase NamesCase(std::string content, std::int32_t size = BufferSize) {
    return {std::move(content), "names", std::nullopt, std::nullopt, std::nullopt, size, ""};
}

ProfileCase SectionCase(std::string content, Text section, std::int32_t size = BufferSize) {
    return {std::move(content), "section", std::move(section), std::nullopt, std::nullopt, size, ""};
}

ProfileCase WriteCase(std::string content, Text section, Text key, Text value) {
    return {std::move(content), "write", std::move(section), std::move(key), std::move(value), 0, ""};
}

/// Where the system at hand and Windows are known to differ, and the plainest way to show it.
std::vector<ProfileCase> KnownOddities() {
    return {
        StringCase("\xEF\xBB\xBF[s]\r\nk=v\r\n", "s", "k"),
        StringCase("[\xC4]\r\n\xD6=v\r\n", "\xE4", "\xD6"),
        StringCase("[s]\r\n\x8A\xC4=v\r\n", "s", "\x9A\xE4"),
        IntCase("[s]\r\nk=\r\n", "s", "k"),
        IntCase("[s]\r\nk=\"\"\r\n", "s", "k"),
        StringCase("[s]\r\n;k=v\r\n", "s", ";k"),
        SectionCase("[s]\r\nk=1\r\n\r\n=2\r\n=3\r\n", "s"),
        WriteCase("[s]\r\nk=1\r\n[]\r\nx=1\r\n", "t", "k", "v"),
    };
}

std::vector<ProfileCase> HandMade() {
    std::vector<ProfileCase> cases = KnownOddities();
    const std::string plain = "[ab]\r\nk=v\r\njj=ww\r\n[c]\r\n";
    for (std::int32_t size = 2; size <= 12; ++size) {
        cases.push_back(NamesCase(plain, size));
        cases.push_back(SectionCase(plain, "ab", size));
        cases.push_back(StringCase(plain, "ab", "jj", "D", size));
        cases.push_back(StringCase(plain, "ab", std::nullopt, "D", size));
        cases.push_back(StringCase(plain, std::nullopt, std::nullopt, "D", size));
        cases.push_back(StringCase(plain, "none", "k", "Default", size));
    }
    for (const char* text : {"  d  ", "\"q\"", "'q", "d\t", " ", "", "''", "\" \""})
        cases.push_back(StringCase(plain, "ab", "none", text));
    cases.push_back(StringCase(plain, "ab", "none", std::nullopt));
    for (const std::string_view value : {"0x1F"sv,
                                         "0X1F"sv,
                                         "-0x10"sv,
                                         "+0x1g"sv,
                                         "0b101"sv,
                                         "0o17"sv,
                                         "017"sv,
                                         "0b2"sv,
                                         "4294967297"sv,
                                         "-2147483649"sv,
                                         "99999999999999999999"sv,
                                         "- 5"sv,
                                         "--5"sv,
                                         "+-5"sv,
                                         "\x01\t 5"sv,
                                         "' 8'"sv,
                                         "\xB2"sv,
                                         "\xA0"
                                         "1"sv,
                                         "0x"sv,
                                         "x1"sv,
                                         "1.9"sv,
                                         "1e3"sv,
                                         "12abc"sv,
                                         "0x12345678"sv,
                                         "-1"sv,
                                         "2147483648"sv,
                                         "1\0002"sv})
        cases.push_back(IntCase("[s]\r\nk=" + std::string(value) + "\r\n", "s", "k"));
    for (const std::string_view value : {"\"a b\""sv,
                                         "'x'"sv,
                                         "\"x'"sv,
                                         "\"\"y\"\""sv,
                                         "\""sv,
                                         "\"\""sv,
                                         "\" z \""sv,
                                         "'\"a\"'"sv,
                                         "\"a\"b"sv,
                                         "v ; c"sv,
                                         "a=b"sv,
                                         "=a"sv,
                                         "\xA0v\xA0"sv,
                                         "\x01v\x01"sv,
                                         "v\x1A"sv,
                                         "v\x1Aw"sv,
                                         "a\0b"sv,
                                         "\"a\0b\""sv,
                                         "\x81\x8D\x8F\x90\x9D\x80"sv,
                                         "\v\fq"sv})
        cases.push_back(StringCase("[s]\r\nk=" + std::string(value) + "\r\nl=1", "s", "k"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", std::nullopt, "k", "w"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", std::nullopt, std::nullopt, std::nullopt));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", "k", "a\r\n[t]\r\nx=1"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", "a=b", "c"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s]", "[k]", "c"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", ";n", "c"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", "", "c"));
    cases.push_back(WriteCase("a=0\r\n[s]\r\nk=v\r\n", "", "k", "c"));
    cases.push_back(WriteCase("a=0\r\n[s]\r\nk=v\r\n", "", std::nullopt, std::nullopt));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", std::nullopt, "not null"));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", " s ", "k", std::nullopt));
    cases.push_back(WriteCase("[s]\r\nk=v\r\n", "s", " k ", std::nullopt));
    cases.push_back(WriteCase("[s]\r\nk\r\n", "S", "K", "new"));
    return cases;
}

std::string DrawLine(Draw& draw) {
    std::string indent = draw.OneOf({"", "", "", " ", "\t ", "\x1A"});
    const std::string end = draw.OneOf({"", "", "", " ", " \t", "\x1A", ";"});
    switch (draw.Below(10)) {
        case 0:
        case 1:
            return indent + '[' +
                   draw.OneOf({"s", "S", "General", "GENERAL", " s ", "t", "s]x", "\xE9t\xE9", "s\0x"sv}) +
                   draw.OneOf({"]", "]", "]", "] ; c", "]]", "] [t]", ""}) + end;
        case 2:
            return indent + draw.OneOf({";", ";k=9", "; [s]", ";;"}) + end;
        case 3:
            return indent;
        case 4:
            return indent + draw.OneOf({"k", "word", "two words", "]", "k\0x"sv}) + end;
        default:
            return indent +
                   draw.OneOf({"k", "K", "k2", "Key", "\xE9", "two words", "[k", "'k'", "k;", "k\0x"sv}) +
                   draw.OneOf({"=", "=", " = ", "\t=", "=="}) +
                   draw.OneOf({"1", "-12", "0x1f", "v", "a b", "\"q\"", "'p q'", "\xC9\xE8", "7;c", "v\0w"sv,
                               "08"}) +
                   end;
    }
}

std::string DrawLines(Draw& draw) {
    std::string content;
    const std::size_t count = draw.Below(10);
    const std::string usual = draw.OneOf({"\r\n", "\r\n", "\n", "\r"});
    if (draw.Below(3) != 0)
        content = "[s]" + usual;
    for (std::size_t i = 0; i < count; ++i) {
        content += DrawLine(draw);
        const bool last = i + 1 == count;
        content += draw.Below(8) == 0 ? draw.OneOf({"\n", "\r", "\r\r\n", "\n\r", "\r\n\r\n"})
                                      : (last && draw.Below(3) == 0 ? "" : usual);
    }
    return content;
}

/// Whether a line starts with "=" or NUL: what is done with several of those is one of the known oddities.
bool HasNamelessEntry(std::string_view content) {
    bool atStart = true;
    for (const char character : content) {
        if (atStart && (character == '=' || character == '\0'))
            return true;
        const bool lineEnd = character == '\r' || character == '\n';
        atStart = lineEnd || (atStart && " \t\v\f\x1A"sv.find(character) != std::string_view::npos);
    }
    return false;
}

std::string DrawSoup(Draw& draw) {
    std::string content;
    do {
        content = "[s]\n";
        for (std::size_t i = draw.Below(50); i > 0; --i)
            content += draw.Below(6) == 0 ? draw.OneOf({"\nk=", "\n[s]\n", "\r\ns="})
                                          : std::string(1, Letters[draw.Below(Letters.size())]);
    } while (HasNamelessEntry(content));
    return content;
}

std::string DrawSection(Draw& draw) {
    return draw.OneOf({"s", "s", "s", "S", "General", "t", "", " s ", "s]x", "\xE9t\xE9", "none"});
}

std::string DrawKey(Draw& draw) {
    return draw.OneOf(
        {"k", "k", "k", "K", "k2", "key", "\xE9", "two words", " k ", "[k", "'k'", "word", "none"});
}

ProfileCase DrawCase(Draw& draw) {
    const std::string content = draw.Below(4) == 0 ? DrawSoup(draw) : DrawLines(draw);
    const auto size = static_cast<std::int32_t>(draw.Below(4) == 0 ? 2 + draw.Below(20) : BufferSize);
    const std::string section = DrawSection(draw);
    const std::string key = DrawKey(draw);
    switch (draw.Below(8)) {
        case 0:
            return NamesCase(content, size);
        case 1:
            return SectionCase(content, section, size);
        case 2:
            return StringCase(content, draw.Below(4) == 0 ? Text() : section, std::nullopt, "DEF", size);
        case 3:
            return IntCase(DrawLines(draw), section, key);
        case 4:
            return WriteCase(content, section, draw.Below(3) == 0 ? Text() : key, std::nullopt);
        case 5:
        case 6:
            return WriteCase(content, section, key,
                             draw.OneOf({"new", "", " 514 ", "\"q\"", "\xC4;\xFF", "1"}));
        default:
            return StringCase(content, section, key, "DEF", size);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: make-profile-cases FILE [SEED]\n";
        return 2;
    }
    Draw draw(argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : 1U);
    std::vector<ProfileCase> cases = HandMade();
    for (std::size_t i = 0; i < DrawnCases; ++i)
        cases.push_back(DrawCase(draw));

    const tallyhorn::TemporaryFolder folder;
    const auto functions = tallyhorn::MakeSystemProfileFunctions();
    std::string output;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        // A file of its own for each, since the system may keep what it read of the last.
        cases[i].Answer = RunCase(*functions, cases[i], folder / (std::to_string(i) + ".ini"));
        output += FormatCase(cases[i]) + '\n';
    }
    tallyhorn::WriteBytes(argv[1], output);
    std::cout << cases.size() << " cases\n";
    return 0;
}
