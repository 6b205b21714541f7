#pragma once

#include <filesystem>
#include <string>

#include "platform/SoundDevice.h"

namespace tallyhorn {

/// Records the commands, each followed by a blank.  The command `Failing` fails.
class FakeSoundDevice final : public SoundDevice {
public:
    Mode CurrentMode() const override { return Now; }
    void SetFileName(const std::filesystem::path& file) override { FileName = file; }
    bool Open() override { return Command("Open ", AfterOpen); }
    bool Close() override { return Command("Close ", Mode::NotOpen); }
    bool Prev() override { return Command("Prev ", Now); }
    bool Play() override { return Command("Play ", Mode::Playing); }

    Mode Now = Mode::NotOpen;
    Mode AfterOpen = Mode::Stopped;
    std::string Failing;
    std::filesystem::path FileName;
    std::string Commands;

private:
    bool Command(const std::string& command, Mode after) {
        Commands += command;
        if (command == Failing)
            return false;
        Now = after;
        return true;
    }
};

}  // namespace tallyhorn
