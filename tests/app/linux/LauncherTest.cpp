#include "tests/app/linux/ConsoleProcess.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// The package's launcher before a program that only notes its arguments; by an account that is not root's
/// where the tests run as root, since nothing is closed to that one.
class LauncherTest : public ProcessTest {
protected:
    void SetUp() override {
        for (const char* const name : {"bin", "lib/tallyhorn-console", "home", "closed"})
            fs::create_directories(folder_ / name);
        fs::copy_file(TALLYHORN_LAUNCHER, folder_ / "bin/tallyhorn-console");
        WriteBytes(folder_ / "lib/tallyhorn-console/tallyhorn-console",
                   "#!/bin/sh\nprintf '%s|' \"$@\" >\"$NOTES\"\n");
        fs::permissions(folder_ / "lib/tallyhorn-console/tallyhorn-console", fs::perms(0755));
        fs::permissions(folder_ / "home", fs::perms(0777));
        fs::permissions(folder_ / "closed", fs::perms(0555));
        WriteBytes(folder_ / "notes", "");
        fs::permissions(folder_ / "notes", fs::perms(0666));
    }
    /// Runs it with a line of arguments and gives what the program got.
    std::string Start(const std::string& arguments, const std::string& variables = "", bool asRoot = false) {
        WriteBytes(folder_ / "notes", "(nothing)");
        const bool change = geteuid() == 0 && !asRoot;
        const std::string command = "exec env -u XDG_DATA_HOME HOME=" + Home() +
                                    " NOTES=" + (folder_ / "notes") + ' ' + variables +
                                    (change ? " setpriv --reuid=65534 --regid=65534 --clear-groups " : " ") +
                                    (folder_ / "bin/tallyhorn-console") + ' ' + arguments;
        EXPECT_EQ(ExitStatus(Spawn("/bin/sh", {"-c", command})), 0) << command;
        return ReadBytes(folder_ / "notes");
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
};

TEST_F(LauncherTest, LaysSettingsOnceForTheConsoleThatItStarts) {
    EXPECT_EQ(Start(""), "--folder|" + Data().string() + "|");
    EXPECT_EQ(ReadBytes(Data() / "thlisten.ini"), Settings());
    EXPECT_EQ(CountFiles(Data()), 1U) << "no draft stays";
    EXPECT_EQ(fs::status(Data()).permissions(), fs::perms::owner_all);
    WriteBytes(Data() / "thlisten.ini", "mine");
    EXPECT_EQ(Start("'an argument'"), "--folder|" + Data().string() + "|an argument|");
    EXPECT_EQ(ReadBytes(Data() / "thlisten.ini"), "mine");
    if (geteuid() == 0) {
        Start("", "XDG_DATA_HOME=" + Home() + "/root", true);
        EXPECT_EQ(ReadBytes(Home() + "/root/tallyhorn-console/thlisten.ini"), Settings(true));
    }
}

TEST_F(LauncherTest, LaysNothingWhereItMayNot) {
    const std::string elsewhere = " XDG_DATA_HOME=" + Home() + "/data";
    const std::string folder = Home() + "/data/tallyhorn-console";
    const struct {
        std::string Arguments;
        std::string Variables;
        std::string Passed;
    } cases[] = {
        {"--folder /x y", "", "--folder|/x|y|"},
        {"--folder=/x", "", "--folder=/x|"},
        {"--help", "", "--help|"},
        {"-h", "", "-h|"},
        {"--version", "", "--version|"},
        {"x", "XDG_DATA_HOME=" + (folder_ / "closed"), "x|"},
        {"x", "XDG_DATA_HOME=/proc/none", "x|"},
    };
    for (const auto& [arguments, variables, passed] : cases)
        EXPECT_EQ(Start(arguments, variables), passed);
    EXPECT_TRUE(fs::is_empty(Home()));
    EXPECT_TRUE(fs::is_empty(folder_ / "closed"));

    // A link that leads nowhere is the user's, and what it leads to is not made.
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms(0777));
    fs::create_symlink(Home() + "/nowhere", folder + "/thlisten.ini");
    EXPECT_EQ(Start("", elsewhere), "--folder|" + folder + "|");
    EXPECT_FALSE(fs::exists(Home() + "/nowhere"));
    EXPECT_EQ(CountFiles(folder), 1U);
    // What is not absolute does not count.
    EXPECT_EQ(Start("", "XDG_DATA_HOME=data"), "--folder|" + Data().string() + "|");
}

TEST_F(LauncherTest, StartsAtTheSameTimeLayOneWholeFile) {
    const std::string launcher = folder_ / "bin/tallyhorn-console";
    const std::string program = "#!/bin/sh\ncat \"$2/thlisten.ini\" >>\"$NOTES\"\n";
    WriteBytes(folder_ / "lib/tallyhorn-console/tallyhorn-console", program);
    const std::string many = "for i in 1 2 3 4 5 6 7 8; do env -u XDG_DATA_HOME HOME=" + Home() +
                             " NOTES=" + (folder_ / "notes") + ' ' + launcher + " & done; wait";
    EXPECT_EQ(ExitStatus(Spawn("/bin/sh", {"-c", many})), 0);
    std::string all;
    for (int i = 0; i < 8; ++i)
        all += Settings(geteuid() == 0);
    EXPECT_EQ(ReadBytes(folder_ / "notes"), all);
    EXPECT_EQ(CountFiles(Data()), 1U);
}

}  // namespace
}  // namespace tallyhorn
