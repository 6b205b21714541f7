#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/BufferedWriter.h"
#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// A file in memory on a disk that is full after some bytes.
class FakeOutputFile final : public OutputFile {
public:
    std::optional<SystemError> Write(std::string_view bytes) override {
        const std::size_t count = std::min(bytes.size(), Room - Bytes.size());
        Bytes.append(bytes.substr(0, count));
        ++Writes;
        if (count < bytes.size())
            return SystemError{28, "No space"};
        return std::nullopt;
    }
    std::optional<SystemError> Finish() override {
        Finished = true;
        return AtEnd;
    }

    std::string Bytes;
    std::size_t Room = std::size_t{1} << 30U;
    int Writes = 0;
    bool Finished = false;
    std::optional<SystemError> AtEnd;
};

std::string Pattern(std::size_t size) {
    std::string bytes(size, ' ');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

TEST(BufferedWriterTest, WritesEverythingInLargePieces) {
    constexpr std::size_t Buffer = BufferedWriter::BufferSize;
    for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{405}, Buffer - 1, Buffer, Buffer + 1}) {
        FakeOutputFile file;
        BufferedWriter writer(file);
        const std::string bytes = Pattern(3 * Buffer + 17);
        for (std::size_t at = 0; at < bytes.size(); at += pieceSize)
            EXPECT_TRUE(writer.Write(std::string_view(bytes).substr(at, pieceSize)));
        EXPECT_FALSE(writer.Finish());
        EXPECT_TRUE(file.Bytes == bytes) << pieceSize;
        EXPECT_LE(file.Writes, 8) << pieceSize;
        EXPECT_TRUE(file.Finished);
    }
}

TEST(BufferedWriterTest, TheFirstFailureEndsAllWriting) {
    FakeOutputFile file;
    file.Room = 300'000;
    file.AtEnd = SystemError{5, "later"};
    BufferedWriter writer(file);
    const std::string bytes = Pattern(1000);
    int taken = 0;
    while (taken < 600 && writer.Write(bytes))
        ++taken;
    EXPECT_FALSE(writer.Write("x"));
    EXPECT_EQ(writer.Finish().value_or(SystemError{}).Number, 28);
    EXPECT_EQ(file.Bytes.size(), 300'000U) << "what was written stays, and nothing follows";
    EXPECT_TRUE(file.Finished);
}

TEST(BufferedWriterTest, TellsWhatFailsAtTheVeryEnd) {
    FakeOutputFile full;
    full.Room = 1;
    BufferedWriter writer(full);
    EXPECT_TRUE(writer.Write("ab"));
    EXPECT_EQ(writer.Finish().value_or(SystemError{}).Number, 28);

    FakeOutputFile broken;
    broken.AtEnd = SystemError{5, "Input/output error"};
    EXPECT_EQ(BufferedWriter(broken).Finish().value_or(SystemError{}).Number, 5);
}

std::string ReadToTheEnd(ByteSource& source) {
    std::string bytes;
    std::vector<char> buffer(1000);
    for (std::size_t count = source.Read(buffer); count > 0; count = source.Read(buffer))
        bytes.append(buffer.data(), count);
    return bytes;
}

TEST(OutputFileTest, MakesANewFileAlone) {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "f";
    const std::string bytes = Pattern(3'000'000);
    SystemError error;
    {
        const auto file = CreateOutputFile(path, error);
        ASSERT_TRUE(file);
        EXPECT_FALSE(file->Write(""));
        EXPECT_FALSE(file->Write(bytes));
        EXPECT_FALSE(file->Finish());
        EXPECT_NE(file->Write("more").value_or(SystemError{}).Number, 0) << "it is closed";
        EXPECT_NE(file->Finish().value_or(SystemError{}).Number, 0);
    }
    EXPECT_TRUE(ReadBytes(path) == bytes);
    EXPECT_FALSE(CreateOutputFile(path, error));
    EXPECT_NE(error.Number, 0);
    EXPECT_NE(error.Text, "");
    EXPECT_TRUE(ReadBytes(path) == bytes);

    EXPECT_FALSE(RemoveFile(path));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(RemoveFile(path).value_or(SystemError{}).Number, 2);
    EXPECT_TRUE(RemoveFile(folder.Path())) << "an empty folder stays";
    EXPECT_TRUE(fs::exists(folder.Path()));
}

TEST(InputFileTest, ReadsAgainAndNoFurtherThanTheSizeAtFirst) {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "f";
    const std::string bytes = Pattern(12'345);
    WriteBytes(path, bytes);
    const auto file = OpenInputFile(path);
    ASSERT_TRUE(file);
    EXPECT_TRUE(ReadToTheEnd(*file) == bytes);
    std::ofstream(path, std::ios::binary | std::ios::app) << "more";
    EXPECT_EQ(ReadToTheEnd(*file), "");
    file->Rewind();
    EXPECT_TRUE(ReadToTheEnd(*file) == bytes);
}

TEST(InputFileTest, CreatesWhatIsMissingAndReadsWhatMayNotBeWritten) {
    const TemporaryFolder folder;
    const auto made = OpenInputFile(folder.Path() / "made");
    ASSERT_TRUE(made);
    EXPECT_EQ(ReadToTheEnd(*made), "");
    EXPECT_TRUE(fs::is_regular_file(folder.Path() / "made"));
    EXPECT_FALSE(OpenInputFile(folder.Path() / "no" / "folder"));

    const fs::path guarded = folder.Path() / "guarded";
    WriteBytes(guarded, "bytes");
    fs::permissions(guarded, fs::perms::owner_read);
    const auto file = OpenInputFile(guarded);
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadToTheEnd(*file), "bytes");
    fs::permissions(guarded, fs::perms::owner_all);
}

TEST(InputFileTest, RefusesWhatIsNoRegularFileWithoutWaiting) {
    const TemporaryFolder folder;
    EXPECT_FALSE(OpenInputFile(folder.Path()));
    if (std::system(("mkfifo " + (folder / "pipe")).c_str()) != 0)
        GTEST_SKIP() << "no pipes with names here";
    EXPECT_FALSE(OpenInputFile(folder.Path() / "pipe"));
}

}  // namespace
}  // namespace tallyhorn
