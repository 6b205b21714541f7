#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

/// A file in memory, on a disk that is full after `Room` bytes.
class FakeOutputFile final : public OutputFile {
public:
    std::optional<SystemError> Write(std::string_view bytes) override {
        const std::size_t count = std::min(bytes.size(), Room - Bytes.size());
        Bytes.append(bytes.substr(0, count));
        ++Writes;
        return count < bytes.size() ? std::optional(SystemError{28, "No space"}) : std::nullopt;
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

/// The error's number, 0 for none.
int NumberOf(const std::optional<SystemError>& error) {
    return error.value_or(SystemError{}).Number;
}

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

TEST(BufferedWriterTest, ReportsTheFirstFailureAndWritesNoMore) {
    const struct {
        std::size_t Room;
        int AtEnd;
        int Expected;
    } cases[] = {{300'000, 5, 28}, {599'999, 0, 28}, {600'000, 5, 5}, {600'000, 0, 0}};
    for (const auto& [room, atEnd, expected] : cases) {
        FakeOutputFile file;
        file.Room = room;
        if (atEnd != 0)
            file.AtEnd = SystemError{atEnd, "later"};
        BufferedWriter writer(file);
        bool written = true;
        for (int i = 0; i < 600; ++i)
            written = writer.Write(std::string(1000, 'x')) && written;
        EXPECT_EQ(written, room > 500'000) << "the last piece fails only in Finish";
        EXPECT_EQ(NumberOf(writer.Finish()), expected) << room;
        EXPECT_EQ(file.Bytes.size(), room);
        EXPECT_TRUE(file.Finished);
    }
}

std::string ReadToTheEnd(ByteSource& source) {
    std::string bytes;
    std::vector<char> buffer(1000);
    for (std::size_t count = source.Read(buffer); count > 0; count = source.Read(buffer))
        bytes.append(buffer.data(), count);
    return bytes;
}

TEST(OutputFileTest, CreatesOnlyNewFiles) {
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
        EXPECT_NE(NumberOf(file->Write("more")), 0) << "it is closed";
        EXPECT_NE(NumberOf(file->Finish()), 0);
    }
    EXPECT_TRUE(ReadBytes(path) == bytes);
    EXPECT_FALSE(CreateOutputFile(path, error));
    EXPECT_NE(error.Number, 0);
    EXPECT_NE(error.Text, "");
    EXPECT_TRUE(ReadBytes(path) == bytes);

    EXPECT_FALSE(RemoveFile(path));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(NumberOf(RemoveFile(path)), 2);
    EXPECT_TRUE(RemoveFile(folder.Path())) << "it is a folder, even if an empty one";
    EXPECT_TRUE(fs::exists(folder.Path()));
}

TEST(InputFileTest, ReadsUpToTheSizeAtItsOpening) {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "f";
    const std::string bytes = Pattern(12'345);
    WriteBytes(path, bytes);
    const auto file = OpenInputFile(path);
    ASSERT_TRUE(file);
    EXPECT_TRUE(ReadToTheEnd(*file) == bytes);
    std::ofstream(path, std::ios::binary | std::ios::app) << "more";
    EXPECT_EQ(ReadToTheEnd(*file), "");
    for (int i = 0; i < 2; ++i) {
        file->Rewind();
        EXPECT_TRUE(ReadToTheEnd(*file) == bytes) << i;
    }
}

TEST(InputFileTest, OpensRegularFilesOnlyAndCreatesMissingOnes) {
    const TemporaryFolder folder;
    for (const char* const name : {"missing", "read-only"}) {
        const fs::path path = folder.Path() / name;
        if (path.filename() == "read-only") {
            WriteBytes(path, "bytes");
            fs::permissions(path, fs::perms::owner_read);
        }
        const auto file = OpenInputFile(path);
        ASSERT_TRUE(file) << name;
        EXPECT_EQ(ReadToTheEnd(*file), path.filename() == "missing" ? "" : "bytes");
        EXPECT_TRUE(fs::is_regular_file(path));
        fs::permissions(path, fs::perms::owner_all);
    }
    EXPECT_FALSE(OpenInputFile(folder.Path() / "no" / "folder"));
    EXPECT_FALSE(OpenInputFile(folder.Path()));
    if (std::system(("mkfifo " + (folder / "pipe")).c_str()) != 0)
        GTEST_SKIP() << "this system has no mkfifo";
    EXPECT_FALSE(OpenInputFile(folder.Path() / "pipe")) << "and does not wait for its other end";
}

/// Returns whether the file was replaced.
bool Replace(const fs::path& path, std::string_view bytes) {
    SystemError error;
    const auto file = CreateReplacementFile(path, error);
    EXPECT_TRUE(file || (error.Number != 0 && !error.Text.empty())) << path;
    return file && !file->Write(bytes) && !file->Finish();
}

TEST(ReplacementFileTest, ReplacesAFileOnlyWhenItIsFinished) {
    const TemporaryFolder folder;
    for (const fs::path& path : {folder.Path() / "new", folder.Path() / "old",
                                 folder.Path() / fs::path(u"\u00DCbersicht \u2013 \u65E5\u672C.txt")}) {
        std::string content;
        if (path.filename() == "old")
            WriteBytes(path, content = "the old content, which is longer");
        for (const char* const name : {"", "first", "", "second", "third"}) {
            SystemError error;
            auto file = CreateReplacementFile(path, error);
            ASSERT_TRUE(file);
            EXPECT_FALSE(file->Write("by "));
            EXPECT_FALSE(file->Write(name));
            EXPECT_EQ(ReadBytes(path), content);
            if (*name != '\0') {
                EXPECT_FALSE(file->Finish());
                content = std::string("by ") + name;
            }
            file.reset();
            EXPECT_EQ(ReadBytes(path), content);
            EXPECT_EQ(fs::exists(path), !content.empty());
        }
    }
    EXPECT_EQ(CountFiles(folder.Path()), 3U);
}

TEST(ReplacementFileTest, TheLastOfTwoAtTheSameTimeWins) {
    const TemporaryFolder folder;
    SystemError error;
    const auto first = CreateReplacementFile(folder / "f", error);
    const auto second = CreateReplacementFile(folder / "f", error);
    ASSERT_TRUE(first && second);
    EXPECT_FALSE(first->Write("first"));
    EXPECT_FALSE(second->Write("second"));
    EXPECT_FALSE(second->Finish());
    EXPECT_FALSE(first->Finish());
    EXPECT_EQ(ReadBytes(folder / "f"), "first");
    EXPECT_EQ(CountFiles(folder.Path()), 1U);
}

TEST(ReplacementFileTest, RefusesWhatIsNotAWritableFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    WriteBytes(folder / "file", "old");
    for (const fs::path& path : {folder.Path() / "folder", folder.Path() / "missing" / "f",
                                 folder.Path() / "file" / "f", fs::path()})
        EXPECT_FALSE(Replace(path, "never")) << path;
    EXPECT_TRUE(fs::is_directory(folder / "folder"));
    EXPECT_EQ(ReadBytes(folder / "file"), "old");
    EXPECT_EQ(CountFiles(folder.Path()), 2U);
    EXPECT_EQ(CountFiles(folder / "folder"), 0U);

    if (std::system(("mkfifo " + (folder / "pipe")).c_str()) != 0)
        GTEST_SKIP() << "this system has no mkfifo";
    fs::create_symlink("pipe", folder / "link");
    EXPECT_FALSE(Replace(folder / "link", "never, and without waiting"));
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(CountFiles(folder.Path()), 4U);
}

TEST(ReplacementFileTest, FailsIfAFolderWithItsNameWasCreatedMeanwhile) {
    const TemporaryFolder folder;
    SystemError error;
    const auto file = CreateReplacementFile(folder / "f", error);
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->Write("never"));
    fs::create_directory(folder / "f");
    EXPECT_TRUE(file->Finish());
    EXPECT_TRUE(file->Write("more")) << "the failure stays";
    EXPECT_TRUE(fs::is_directory(folder / "f"));
}

TEST(ReplacementFileTest, KeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    WriteBytes(folder / "real/f", "old");
    fs::permissions(folder / "real/f",
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::perms before = fs::status(folder / "real/f").permissions();
    EXPECT_TRUE(Replace(folder / "real/f", "new"));
    EXPECT_EQ(fs::status(folder / "real/f").permissions(), before);

    std::error_code error;
    fs::create_symlink("real/f", folder / "link", error);
    if (error || !fs::is_symlink(folder / "link"))
        GTEST_SKIP() << "this system has no symbolic links";
    EXPECT_TRUE(Replace(folder / "link", "newer"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadBytes(folder / "real/f"), "newer");
    fs::create_symlink("real/later", folder / "early");
    EXPECT_TRUE(Replace(folder / "early", "made"));
    EXPECT_EQ(ReadBytes(folder / "real/later"), "made");
    fs::create_symlink("round", folder / "round");
    EXPECT_FALSE(Replace(folder / "round", "never"));
    EXPECT_EQ(CountFiles(folder / "real"), 2U);
}

}  // namespace
}  // namespace tallyhorn
