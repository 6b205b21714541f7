#include "tests/app/linux/ConsoleProcess.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// Runs the package's launcher with a program that only writes its arguments to a file, and not as root,
/// because root may write to every folder.
class LauncherTest : public ProcessTest {
protected:
    void SetUp() override {
        for (const char* const name : {"bin", "lib/tallyhorn-console", "home", "closed"})
            fs::create_directories(folder_ / name);
        fs::copy_file(TALLYHORN_LAUNCHER, launcher_);
        WriteBytes(program_, "#!/bin/sh\nprintf '%s|' \"$@\" >\"$NOTES\"\n");
        fs::permissions(program_, fs::perms(0755));
        fs::permissions(folder_ / "home", fs::perms(0777));
        fs::permissions(folder_ / "closed", fs::perms(0555));
        WriteBytes(folder_ / "notes", "");
        fs::permissions(folder_ / "notes", fs::perms(0666));
    }
    /// Runs the launcher with the words of `arguments` and returns the program's arguments.
    std::string Start(const std::string& arguments, const std::string& variables = "", bool asRoot = false) {
        WriteBytes(folder_ / "notes", "(nothing)");
        const bool change = geteuid() == 0 && !asRoot;
        Run(variables + (change ? " setpriv --reuid=65534 --regid=65534 --clear-groups " : " ") + launcher_ +
            ' ' + arguments);
        return ReadBytes(folder_ / "notes");
    }
    void Run(const std::string& command) {
        const std::string env = "env -u XDG_DATA_HOME HOME=" + Home() + " NOTES=" + (folder_ / "notes") + ' ';
        EXPECT_EQ(ExitStatus(Spawn("/bin/sh", {"-c", env + command})), 0) << command;
    }
    static std::string Port(bool asRoot) {
        const std::string first = ReadBytes("/proc/sys/net/ipv4/ip_unprivileged_port_start");
        return asRoot || (!first.empty() && std::stoi(first) <= 514) ? "514" : "5514";
    }
    static std::string Settings(bool asRoot = false) {
        return "[General]\r\nMessageViews=7\r\nDateTime=0\r\nSeperator=/\r\nSoundOn=0\r\nSyslogUDPPort=" +
               Port(asRoot) +
               "\r\nCPWidth=0\r\nCPHeight=0\r\nColWidth1=0\r\nColWidth2=0\r\nColWidth3=0\r\nColWidth4=0\r\n"
               "ColWidth5=0\r\n";
    }
    std::string Home() const { return folder_ / "home"; }
    fs::path Data() const { return folder_.Path() / "home/.local/share/tallyhorn-console"; }

    const std::string launcher_ = folder_ / "bin/tallyhorn-console";
    const fs::path program_ = folder_ / "lib/tallyhorn-console/tallyhorn-console";
};

TEST_F(LauncherTest, WritesSettingsOnceForTheConsoleThatItStarts) {
    EXPECT_EQ(Start(""), "--folder|" + Data().string() + "|");
    EXPECT_EQ(ReadBytes(Data() / "thlisten.ini"), Settings());
    EXPECT_EQ(fs::status(Data()).permissions(), fs::perms::owner_all);
    WriteBytes(Data() / "thlisten.ini", "mine");
    EXPECT_EQ(Start("'an argument'"), "--folder|" + Data().string() + "|an argument|");
    EXPECT_EQ(ReadBytes(Data() / "thlisten.ini"), "mine");
    if (geteuid() == 0) {
        Start("", "XDG_DATA_HOME=" + Home() + "/root", true);
        EXPECT_EQ(ReadBytes(Home() + "/root/tallyhorn-console/thlisten.ini"), Settings(true));
    }
}

TEST_F(LauncherTest, WritesNothingIfItMayNot) {
    for (const std::string arguments : {"--folder=/x", "--help", "-h", "--version"})
        EXPECT_EQ(Start(arguments), arguments + '|');
    EXPECT_EQ(Start("--folder /x y"), "--folder|/x|y|");
    for (const std::string& home : {folder_ / "closed", std::string("/proc/none")})
        EXPECT_EQ(Start("x", "XDG_DATA_HOME=" + home), "x|");
    EXPECT_TRUE(fs::is_empty(Home()));
    EXPECT_TRUE(fs::is_empty(folder_ / "closed"));

    // If thlisten.ini is the user's link to a missing file, the launcher must not create that file.
    const std::string folder = Home() + "/data/tallyhorn-console";
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms(0777));
    fs::create_symlink(Home() + "/nowhere", folder + "/thlisten.ini");
    EXPECT_EQ(Start("", "XDG_DATA_HOME=" + Home() + "/data"), "--folder|" + folder + "|");
    EXPECT_FALSE(fs::exists(Home() + "/nowhere"));
    EXPECT_EQ(CountFiles(folder), 1U);
    EXPECT_EQ(Start("", "XDG_DATA_HOME=data"), "--folder|" + Data().string() + "|") << "relative: ignored";
}

TEST_F(LauncherTest, StartsAtTheSameTimeWriteOneWholeFile) {
    WriteBytes(program_, "#!/bin/sh\ncat \"$2/thlisten.ini\" >>\"$NOTES\"\n");
    Run("sh -c 'for i in 1 2 3 4 5 6 7 8; do " + launcher_ + " & done; wait'");
    std::string all;
    for (int i = 0; i < 8; ++i)
        all += Settings(geteuid() == 0);
    EXPECT_EQ(ReadBytes(folder_ / "notes"), all);
    EXPECT_EQ(CountFiles(Data()), 1U);
}

}  // namespace
}  // namespace tallyhorn
