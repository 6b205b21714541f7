#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "storage/BackupReader.h"
#include "tests/support/MemorySource.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

std::string Letters(std::size_t length, char letter = 'x') {
    return std::string(length, letter);
}

Texts ReadAll(std::string_view bytes, std::size_t pieceSize) {
    MemorySource source(bytes, pieceSize);
    BackupReader reader(source);
    Texts texts;
    std::string_view text;
    for (auto step = reader.Next(text); step != BackupReader::Step::End; step = reader.Next(text)) {
        if (step == BackupReader::Step::Text)
            texts.emplace_back(text);
    }
    EXPECT_EQ(source.Left(), 0U);
    EXPECT_EQ(reader.Next(text), BackupReader::Step::End) << "the end is final";
    return texts;
}

const std::string A25 = "00025" + Letters(25, 'a');
const std::string B20 = "00020" + Letters(20, 'b');
const Texts Both = {Letters(25, 'a'), Letters(20, 'b')};
const Texts First = {Letters(25, 'a')};
const Texts Second = {Letters(20, 'b')};

TEST(BackupReaderTest, FollowsTheLengths) {
    const std::tuple<const char*, std::string, Texts> cases[] = {
        {"nothing", "", {}},
        {"two", A25 + B20, Both},
        {"the longest", "99999" + Letters(99999, 'y') + B20, {Letters(99999, 'y'), Letters(20, 'b')}},
        {"blanks, NULs and line ends", "00020 " + Letters(18, '\0') + "\n", {" " + Letters(18, '\0') + "\n"}},
        // After a length below 20 nothing is skipped: the next five bytes are read as a length.
        {"five", "00005" + A25, First},
        {"a text read as lengths", "00019" + Letters(14, 'z') + B20, {}},
        {"19, then a length", "00019" + B20, Second},
        {"a fraction", "19.75" + Letters(20), {Letters(20)}},
        {"six digits", "100000" + Letters(9999) + B20, {"0" + Letters(9999), Letters(20, 'b')}},
        {"cut in the length", A25 + "0002", First},
        {"cut behind the length", A25 + "00020", First},
        {"cut in the text", A25 + B20.substr(0, B20.size() - 1), First},
        {"too long", A25 + "99999" + B20, First},
        {"one byte", "0", {}},
        // The first text lacks a byte and takes a # as its last; two invalid lengths and a valid one follow.
        {"a text after a damaged one",
         "00025" + Letters(24, 'a') + Letters(11, '#') + B20,
         {Letters(24, 'a') + "#", Letters(20, 'b')}},
    };
    for (const auto& [what, bytes, expected] : cases) {
        for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{7}, std::size_t{1} << 20U})
            EXPECT_EQ(ReadAll(bytes, pieceSize), expected) << what << " in pieces of " << pieceSize;
    }
}

}  // namespace
}  // namespace tallyhorn
