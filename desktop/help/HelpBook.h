#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/help/HelpTables.h"
#include "platform/HelpArchive.h"

namespace tallyhorn {

/// One opened help file, held in memory: its table of contents, and its pages by number and by name.  The
/// file need not be trusted: its size is limited, and any content is accepted.
class HelpBook {
public:
    /// Reads the file.  Returns null if it is not a help file or lacks its start page.
    static std::unique_ptr<HelpBook> Open(const std::filesystem::path& file);

    const std::string& Title() const { return facts_.Title; }
    const std::string& StartPage() const { return facts_.StartPage; }
    const std::vector<HelpEntry>& Contents() const { return contents_; }
    /// Returns the page with the number `context`, or the start page if no page has this number.
    const std::string& PageOf(std::uint32_t context) const;
    /// Returns the pages in the order of the table of contents, each once.
    std::vector<std::string> Pages() const;
    /// Returns the bytes of a page, a picture or a style sheet, or an empty text if the file has none of that
    /// name.
    std::string Read(const std::string& name) const;

private:
    explicit HelpBook(HelpFiles files);

    HelpFiles files_;
    HelpFacts facts_;
    std::vector<HelpEntry> contents_;
    std::map<std::uint32_t, std::string> contexts_;
};

}  // namespace tallyhorn
