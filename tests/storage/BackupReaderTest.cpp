#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "storage/BackupReader.h"
#include "tests/fakes/MemorySource.h"

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
    EXPECT_EQ(reader.Next(text), BackupReader::Step::End) << "an end stays one";
    return texts;
}

struct ReadCase {
    const char* Name;
    std::string Bytes;
    Texts Expected;
};

void PrintTo(const ReadCase& testCase, std::ostream* out) {
    *out << testCase.Name;
}

const std::string A25 = "00025" + Letters(25, 'a');
const std::string B20 = "00020" + Letters(20, 'b');
const Texts Both = {Letters(25, 'a'), Letters(20, 'b')};
const Texts First = {Letters(25, 'a')};
const Texts Second = {Letters(20, 'b')};

class BackupReaderTest : public ::testing::TestWithParam<ReadCase> {};

TEST_P(BackupReaderTest, GivesTheTextsThatTheLengthsLeadTo) {
    for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{7}, std::size_t{1} << 20U})
        EXPECT_EQ(ReadAll(GetParam().Bytes, pieceSize), GetParam().Expected) << pieceSize;
}

const ReadCase Whole[] = {
    {"Nothing", "", {}},
    {"Two", A25 + B20, Both},
    {"Longest", "99999" + Letters(99999) + B20, {Letters(99999), Letters(20, 'b')}},
    {"ThreeLongest",
     "99999" + Letters(99999, '1') + "99999" + Letters(99999, '2') + "99999" + Letters(99999, '3'),
     {Letters(99999, '1'), Letters(99999, '2'), Letters(99999, '3')}},
    {"BlankText", "00020" + Letters(20, ' ') + A25, {Letters(20, ' '), Letters(25, 'a')}},
    {"NulsAndLineEnds",
     std::string("00020") + std::string(10, '\0') + Letters(10, '\n'),
     {std::string(10, '\0') + Letters(10, '\n')}},
};
INSTANTIATE_TEST_SUITE_P(Whole, BackupReaderTest, ::testing::ValuesIn(Whole));

/// Of 19 characters nothing is skipped: the next length is read right behind the 19's.
const ReadCase Short[] = {
    {"Five", "00005" + A25, First},
    {"TextReadAsLengths", "00019" + Letters(14, 'z') + "00020" + Letters(20, 'b'), {}},
    {"NineteenThenALength", "00019" + B20, Second},
    {"Zeros", "00000" + A25 + "00000", First},
    {"Negative", "-0025" + A25, First},
};
INSTANTIATE_TEST_SUITE_P(Short, BackupReaderTest, ::testing::ValuesIn(Short));

const ReadCase Numbers[] = {
    {"Plus", "+0025" + Letters(25), {Letters(25)}},
    {"BlanksBefore", "   25" + Letters(25), {Letters(25)}},
    {"BlanksAround", " 25  " + Letters(25), {Letters(25)}},
    {"Fraction", "19.75" + Letters(20), {Letters(20)}},
    {"HalfToEven", "20.50" + Letters(20), {Letters(20)}},
    {"Exponent", "002e1" + B20, Second},
    {"Hexadecimal", "0x019" + B20, Second},
    {"NulInside", std::string("25\0\0\0", 5) + B20, Second},
    {"SixDigits", "100000" + Letters(9999) + B20, {"0" + Letters(9999), Letters(20, 'b')}},
};
INSTANTIATE_TEST_SUITE_P(Numbers, BackupReaderTest, ::testing::ValuesIn(Numbers));

const ReadCase Cut[] = {
    {"InTheLength", A25 + "0002", First},
    {"BehindTheLength", A25 + "00020", First},
    {"InTheText", A25 + B20.substr(0, B20.size() - 1), First},
    {"TooLong", A25 + "99999" + B20, First},
    {"LengthAlone", "00025", {}},
    {"OneByte", "0", {}},
};
INSTANTIATE_TEST_SUITE_P(Cut, BackupReaderTest, ::testing::ValuesIn(Cut));

TEST(BackupReaderDamageTest, JunkBetweenRecordsNeverMakesUpAText) {
    for (std::size_t junk = 1; junk <= 9; ++junk) {
        // Letters make no number: from here on only whole fives keep in step with the lengths.
        const Texts expected = junk % BackupLengthDigits == 0 ? Both : First;
        std::string bytes = A25;
        bytes.append(junk, 'j').append(B20);
        EXPECT_EQ(ReadAll(bytes, 1 << 20), expected) << junk;
    }
}

TEST(BackupReaderDamageTest, FallsBackIntoStepBehindDamage) {
    // One byte lost moves all that follows; eleven of junk bring the lengths back into step.
    const std::string bytes = "00025" + Letters(24, 'a') + Letters(11, '#') + B20;
    EXPECT_EQ(ReadAll(bytes, 64), Texts({Letters(24, 'a') + "#", Letters(20, 'b')}));
}

TEST(BackupReaderDamageTest, RubbishIsReadInSteps) {
    const std::string rubbish = Letters(std::size_t{1} << 20U, '#');
    MemorySource source(rubbish);
    BackupReader reader(source);
    std::string_view text;
    int steps = 1;
    for (; reader.Next(text) == BackupReader::Step::NotYet; ++steps)
        ASSERT_LT(steps, 1000);
    EXPECT_GT(steps, 50);
    EXPECT_EQ(source.Left(), 0U);
}

}  // namespace
}  // namespace tallyhorn
