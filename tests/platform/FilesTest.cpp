#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

#include "platform/BufferedWriter.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// Writes to memory, like to a file on a disk that is full after `Room` bytes.
class FakeOutputFile final : public OutputFile {
public:
    std::optional<SystemError> Write(std::string_view bytes) override {
        ++Writes;
        const std::string_view fitting = bytes.substr(0, Room - Bytes.size());
        Bytes += fitting;
        return fitting.size() < bytes.size() ? std::optional(SystemError{28, "No space"}) : std::nullopt;
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

/// Returns the number of the error, or 0 if there is none.
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
    const std::string bytes = Pattern(3 * Buffer + 17);
    for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{405}, Buffer - 1, Buffer, Buffer + 1}) {
        FakeOutputFile file;
        BufferedWriter writer(file);
        for (std::size_t at = 0; at < bytes.size(); at += pieceSize)
            EXPECT_TRUE(writer.Write(std::string_view(bytes).substr(at, pieceSize)));
        EXPECT_FALSE(writer.Finish());
        EXPECT_TRUE(file.Bytes == bytes) << pieceSize;
        EXPECT_LE(file.Writes, 8) << pieceSize;
    }
}

TEST(BufferedWriterTest, ReportsTheFirstFailureAndWritesNoMore) {
    const std::tuple<std::size_t, int, int> cases[] = {
        {300'000, 5, 28}, {599'999, 0, 28}, {600'000, 5, 5}, {600'000, 0, 0}};
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

class FilesTest : public testing::Test {
protected:
    /// Returns whether the file was replaced.
    static bool Replace(const fs::path& path, std::string_view bytes) {
        SystemError error;
        const auto file = CreateReplacementFile(path, error);
        EXPECT_TRUE(file || (error.Number != 0 && !error.Text.empty())) << path;
        return file && !file->Write(bytes) && !file->Finish();
    }
    static std::string ReadToTheEnd(ByteSource& source) {
        std::string bytes;
        std::vector<char> buffer(1000);
        for (std::size_t count = source.Read(buffer); count > 0; count = source.Read(buffer))
            bytes.append(buffer.data(), count);
        return bytes;
    }
    bool MakePipe() const { return std::system(("mkfifo " + (folder_ / "pipe")).c_str()) == 0; }

    const TemporaryFolder folder_;
    const fs::path path_ = folder_.Path() / "f";
    const std::unique_ptr<Files> files_ = MakeFiles();
    SystemError error_;
};

TEST_F(FilesTest, InputIsReadUpToTheSizeAtItsOpening) {
    const std::string bytes = Pattern(12'345);
    WriteBytes(path_, bytes);
    const auto file = OpenInputFile(path_, error_);
    ASSERT_TRUE(file);
    EXPECT_TRUE(ReadToTheEnd(*file) == bytes);
    WriteBytes(path_, bytes + "more");
    EXPECT_EQ(ReadToTheEnd(*file), "");
    for (int i = 0; i < 2; ++i) {
        file->Rewind();
        EXPECT_TRUE(ReadToTheEnd(*file) == bytes) << i;
    }
}

TEST_F(FilesTest, OpeningTellsAMissingFileFromAnUnreadableOne) {
    WriteBytes(folder_ / "file", "bytes");
    fs::permissions(folder_ / "file", fs::perms::owner_read);
    const bool hasPipe = MakePipe();
    using Opening = Files::Opening;
    const std::tuple<const char*, Opening> cases[] = {{"file", Opening::Opened},
                                                      {"missing", Opening::Missing},
                                                      {".", Opening::Failed},
                                                      {"file/f", Opening::Failed},
                                                      {hasPipe ? "pipe" : ".", Opening::Failed}};
    for (const auto& [name, expected] : cases) {
        std::unique_ptr<InputFile> file;
        SystemError error;
        EXPECT_EQ(files_->Open(folder_ / name, file, error), expected) << name;
        EXPECT_EQ(file != nullptr, expected == Opening::Opened) << name;
        EXPECT_EQ(error.Number == 0, expected == Opening::Opened) << name;
    }
    EXPECT_EQ(files_->CreateReplacement(path_, error_), nullptr);
    EXPECT_EQ(error_.Number, 2);
    EXPECT_EQ(CountFiles(folder_.Path()), hasPipe ? 2U : 1U);
    fs::permissions(folder_ / "file", fs::perms::owner_all);
}

TEST_F(FilesTest, AppendingKeepsTheFirstBytesAndAllowsARename) {
    const fs::path renamed = folder_.Path() / "renamed";
    for (const auto& [old, kept, expected] : {std::tuple("", 0U, "abc"),
                                              {"", 9U, "abc"},
                                              {"12345", 0U, "abc"},
                                              {"12345", 3U, "123abc"},
                                              {"12345", 9U, "12345abc"}}) {
        if (*old != '\0')
            WriteBytes(path_, old);
        const auto file = files_->OpenToAppend(path_, kept, error_);
        ASSERT_TRUE(file) << error_.Text;
        EXPECT_FALSE(file->Write("ab") || file->Sync() || files_->Rename(path_, renamed) || file->Write("c"));
        EXPECT_EQ(ReadBytes(renamed), expected);
        EXPECT_FALSE(fs::exists(path_));
    }
    WriteBytes(path_, "bytes");
    EXPECT_EQ(files_->OpenToAppend(folder_.Path(), 0, error_), nullptr);
    EXPECT_FALSE(files_->Rename(path_, folder_ / "other") || files_->Remove(folder_ / "other"));
    EXPECT_FALSE(files_->Remove(path_)) << "a missing file is no error";
    EXPECT_TRUE(files_->Rename(path_, folder_ / "other"));
}

TEST_F(FilesTest, WhatIsKeptAsideStaysWhenTheFileIsReplaced) {
    const fs::path aside = folder_.Path() / "f.aside";
    std::error_code noLinks;
    for (const bool link : {false, true}) {
        WriteBytes(folder_ / "real", "old");
        if (link)
            fs::create_symlink("real", path_, noLinks);
        const fs::path path = link && !noLinks && fs::is_symlink(path_) ? path_ : folder_.Path() / "real";
        EXPECT_FALSE(files_->KeepAside(path, aside));
        EXPECT_TRUE(files_->KeepAside(path, aside)) << "the name is taken";
        EXPECT_EQ(ReadBytes(path), "old");
        const auto file = files_->CreateReplacement(path, error_);
        ASSERT_TRUE(file) << error_.Text;
        EXPECT_FALSE(file->Write("new") || file->Finish());
        EXPECT_EQ(ReadBytes(aside), "old");
        EXPECT_EQ(files_->PathsBeginningWith(folder_.Path() / "f."), std::vector{aside});
        EXPECT_FALSE(files_->Remove(aside));
    }
    EXPECT_TRUE(files_->KeepAside(folder_ / "missing", aside));
    fs::create_directory(folder_ / "folder");
    EXPECT_TRUE(files_->KeepAside(folder_ / "folder", aside));
    EXPECT_EQ(files_->PathsBeginningWith(folder_.Path() / "no folder/f"), std::vector<fs::path>());
}

TEST_F(FilesTest, AReplacementShowsOnlyWhenItIsFinished) {
    WriteBytes(folder_ / "old", "the old content, which is longer");
    for (const fs::path& name :
         {fs::path("new"), fs::path("old"), fs::path(u"\u00DCbersicht \u2013 \u65E5\u672C.txt")}) {
        const fs::path path = folder_.Path() / name;
        std::string content = ReadBytes(path);
        for (const std::string text : {"", "first", "", "second", "third"}) {
            auto file = CreateReplacementFile(path, error_);
            ASSERT_TRUE(file);
            EXPECT_FALSE(file->Write(text));
            EXPECT_EQ(ReadBytes(path), content);
            if (!text.empty()) {
                EXPECT_FALSE(file->Finish());
                content = text;
            }
            file.reset();
            EXPECT_EQ(ReadBytes(path), content);
            EXPECT_EQ(fs::exists(path), !content.empty());
        }
    }
    EXPECT_EQ(CountFiles(folder_.Path()), 3U);
}

TEST_F(FilesTest, TheLastOfTwoReplacementsAtTheSameTimeWins) {
    const auto first = CreateReplacementFile(path_, error_);
    const auto second = CreateReplacementFile(path_, error_);
    ASSERT_TRUE(first && second);
    EXPECT_FALSE(first->Write("first") || second->Write("second") || second->Finish() || first->Finish());
    EXPECT_EQ(ReadBytes(path_), "first");
    EXPECT_EQ(CountFiles(folder_.Path()), 1U);
}

TEST_F(FilesTest, OnlyAWritableFileIsReplaced) {
    fs::create_directory(folder_ / "folder");
    WriteBytes(folder_ / "file", "old");
    for (const char* const name : {"folder", "missing/f", "file/f"})
        EXPECT_FALSE(Replace(folder_ / name, "never")) << name;
    EXPECT_FALSE(Replace(fs::path(), "never"));
    EXPECT_EQ(ReadBytes(folder_ / "file"), "old");
    EXPECT_EQ(CountFiles(folder_.Path()), 2U);
    EXPECT_EQ(CountFiles(folder_ / "folder"), 0U);

    const auto file = CreateReplacementFile(path_, error_);
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->Write("never"));
    fs::create_directory(path_);
    EXPECT_TRUE(file->Finish()) << "a folder has taken the name";
    EXPECT_TRUE(file->Write("more")) << "the failure stays";
    EXPECT_TRUE(fs::is_directory(path_));
    if (!MakePipe())
        GTEST_SKIP() << "this system has no mkfifo";
    fs::create_symlink("pipe", folder_ / "link");
    EXPECT_FALSE(Replace(folder_ / "link", "never, and without waiting"));
    EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
}

TEST_F(FilesTest, AReplacementKeepsPermissionsAndLinks) {
    fs::create_directory(folder_ / "real");
    WriteBytes(folder_ / "real/f", "old");
    fs::permissions(folder_ / "real/f", fs::perms{0640});
    const fs::perms before = fs::status(folder_ / "real/f").permissions();
    EXPECT_TRUE(Replace(folder_ / "real/f", "new"));
    EXPECT_EQ(fs::status(folder_ / "real/f").permissions(), before);

    std::error_code error;
    fs::create_symlink("real/f", folder_ / "link", error);
    if (error || !fs::is_symlink(folder_ / "link"))
        GTEST_SKIP() << "this system has no symbolic links";
    EXPECT_TRUE(Replace(folder_ / "link", "newer"));
    EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
    EXPECT_EQ(ReadBytes(folder_ / "real/f"), "newer");
    fs::create_symlink("real/later", folder_ / "early");
    EXPECT_TRUE(Replace(folder_ / "early", "made"));
    EXPECT_EQ(ReadBytes(folder_ / "real/later"), "made");
    fs::create_symlink("round", folder_ / "round");
    EXPECT_FALSE(Replace(folder_ / "round", "never"));
    EXPECT_EQ(CountFiles(folder_ / "real"), 2U);
}

}  // namespace
}  // namespace tallyhorn
