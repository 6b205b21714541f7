#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <string>

#include "tests/storage/ExportFixture.h"

namespace tallyhorn {
namespace {

/// Stands in for a full disk: during the object's life, this process cannot write beyond `bytes` bytes of any
/// file.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : signalBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signalBefore_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*const signalBefore_)(int);
    rlimit before_{};
};

class FullDiskTest : public ExportFixture {};

TEST_F(FullDiskTest, AFailedExportKeepsTheEarlierFile) {
    const std::string name(1'000'000, 'x');
    StoreNamed(name);
    WriteBytes(file_, "old");
    {
        const FileSizeLimit limit(600'000);
        export_.ExportMessages();
        ASSERT_EQ(Boxes.Shown.size(), 2U) << "the question and the failure";
        EXPECT_NE(Boxes.Shown[1].find("The following error occurred"), std::string::npos) << Boxes.Shown[1];
    }
    EXPECT_EQ(ReadBytes(file_), "old");
    EXPECT_TRUE(Exported() == Header + Line(name)) << "the file is replaced as a whole";
}

}  // namespace
}  // namespace tallyhorn
