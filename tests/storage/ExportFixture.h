#pragma once

#include <gtest/gtest.h>

#include "storage/MessageExport.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FileBytes.h"
#include "tests/support/MessagesInMemory.h"
#include "tests/support/Notifications.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// Owns an export with empty message stores and a save dialog that returns `file_`, in a temporary folder.
class ExportFixture : public ::testing::Test, protected MessagesInMemory {
protected:
    using Texts = std::vector<std::string>;

    static constexpr const char* Header =
        "DateTime,AlarmName,LogType,Source,TypeOfEvent,Category,EventID,AccountName,Computer,Description\r\n";

    ExportFixture() { dialog_.Answer = file_; }

    static AlarmRecord Record(const std::string& name, const std::string& type = "Error") {
        return RecordOf({.Name = name, .Type = type});
    }
    /// Returns the line that an export of Record(name, type) writes.
    static std::string Line(const std::string& name, const std::string& type = "Error") {
        return "08/21/2008 2:05:09 PM," + name + ",System,Disk," + type + ",None,7,JOE,PC,\"text\"\r\n";
    }
    void StoreNamed(const std::string& name) { KeepNetBios(NetBiosText({.Name = name}), false); }

    /// Exports and returns the file's bytes.  The export must ask one question and create no other file.
    std::string Exported() {
        Boxes.Shown.clear();
        export_.ExportMessages(Display.Page);
        EXPECT_EQ(Boxes.Shown.size(), 1U);
        EXPECT_EQ(CountFiles(folder_.Path()), 1U);
        return ReadBytes(file_);
    }
    /// Checks that the export neither asks nor writes anything.
    void ExpectSilence() {
        Boxes.Shown.clear();
        dialog_.Asked.clear();
        export_.ExportMessages(Display.Page);
        EXPECT_EQ(Boxes.Shown, Texts());
        EXPECT_TRUE(dialog_.Asked.empty());
        EXPECT_EQ(CountFiles(folder_.Path()), 0U);
    }

    TemporaryFolder folder_;
    const std::filesystem::path file_ = folder_.Path() / "chosen name.txt";
    FakeSaveDialog dialog_;
    MessageExport export_{{Context, dialog_}, "console folder", {folder_ / "Backup.dat"}};
};

}  // namespace tallyhorn
