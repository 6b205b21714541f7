#pragma once

#include <string>
#include <vector>

#include "platform/ProgramLauncher.h"

namespace tallyhorn {

/// Records each program with its arguments, and starts nothing.
class FakePrograms final : public ProgramLauncher {
public:
    bool Start(const std::string& program, std::span<const std::string> arguments) override {
        Started.emplace_back(1, program);
        Started.back().insert(Started.back().end(), arguments.begin(), arguments.end());
        return Works;
    }

    bool Works = true;
    std::vector<std::vector<std::string>> Started;
};

}  // namespace tallyhorn
