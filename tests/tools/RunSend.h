#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {

struct Outcome {
    int Status = -1;
    std::string Output;
    std::string Errors;
};

/// Runs tallyhorn-send as a process of its own.
/// No argument may hold a double quote, a dollar sign, a backquote or a percent sign: within double quotes
/// all else means itself to every shell.
inline Outcome RunSend(const TemporaryFolder& home, const std::vector<std::string>& arguments,
                       const std::string& redirection = {}) {
    // Starts with no quote: one system's shell removes a first and a last one.
    std::string command = "cd . && \"" TALLYHORN_SEND "\"";
    for (const std::string& argument : arguments)
        command += " \"" + argument + '"';
    command += redirection + " >\"" + (home / "out") + "\" 2>\"" + (home / "err") + '"';
    const int status = std::system(command.c_str());
    constexpr int MostOfAByte = 255;
    return {status > MostOfAByte ? status >> 8 : status, ReadText(home / "out"), ReadText(home / "err")};
}

}  // namespace tallyhorn
