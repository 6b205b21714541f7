// usage: show-arguments FILE [ARGUMENT...]
// Writes the arguments to FILE, each followed by a NUL.  FILE gets its name when it is complete, so that a
// test that waits for it can read it at once.

#include <filesystem>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    if (argc < 2)
        return 1;
    const std::string file = argv[1];
    {
        std::ofstream stream(file + ".part", std::ios::binary);
        for (int i = 2; i < argc; ++i)
            stream << argv[i] << '\0';
    }
    std::filesystem::rename(file + ".part", file);
    return 0;
}
