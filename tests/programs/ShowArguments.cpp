// Writes the arguments behind the first one into the file that the first one names, each with a NUL behind
// it, in one step: whoever waits for the file finds all of it.

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
