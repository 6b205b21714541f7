#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallyhorn {

// What a compiled help file tells about itself, read from its inner files.  Pure functions; whatever the
// bytes are, they end soon and give no more than the bounds below.

/// A line of the contents.
struct HelpEntry {
    std::string Name;
    std::string Local;  ///< page, perhaps with "#" and an anchor; empty for a mere heading
    int Depth = 0;      ///< 0 for the outermost
};

constexpr std::size_t MostHelpEntries = 2000;
constexpr int DeepestHelpEntry = 8;

/// Of a contents file (.hhc).
std::vector<HelpEntry> ParseHelpContents(std::string_view text);

/// Page by number, of the streams "#IVB" and "#STRINGS".
std::map<std::uint32_t, std::string> ParseHelpContexts(std::string_view numbers, std::string_view strings);

/// Whether a page is so that showing it takes neither long nor much memory, nested and wide as it may be.
bool IsModestHtml(std::string_view html);

struct HelpFacts {
    std::string ContentsFile;
    std::string StartPage;
    std::string Title;
};
/// Of the stream "#SYSTEM".
HelpFacts ParseHelpFacts(std::string_view bytes);

}  // namespace tallyhorn
