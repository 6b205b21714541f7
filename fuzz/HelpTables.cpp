// Parses arbitrary bytes as the tables of a help file.  Parsing must end, stay within the limits, and return
// only texts that are in the bytes.

#include "desktop/help/HelpTables.h"

#include <algorithm>

#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tallyhorn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    const std::vector<HelpEntry> entries = ParseHelpContents(bytes);
    Require(entries.size() <= MostHelpEntries);
    for (const HelpEntry& entry : entries) {
        Require(!entry.Name.empty() && entry.Name.size() + entry.Local.size() <= size);
        Require(entry.Depth >= 0 && entry.Depth <= DeepestHelpEntry);
    }

    // The input is cut in two at the position that its first byte gives: the table, and the texts to which
    // the table refers.
    const std::size_t middle = size == 0 ? 0 : data[0] % size;
    const std::string_view strings = bytes.substr(middle);
    for (const auto& [number, page] : ParseHelpContexts(bytes.substr(0, middle), strings))
        Require(strings.find(page) != std::string_view::npos);

    const HelpFacts facts = ParseHelpFacts(bytes);
    for (const std::string& text : {facts.ContentsFile, facts.StartPage, facts.Title})
        Require(bytes.find(text) != std::string_view::npos);

    const auto tags = std::count(bytes.begin(), bytes.end(), '>');
    Require(IsModestHtml(bytes) || tags > 0);
    return 0;
}
