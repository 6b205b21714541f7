#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/help/HelpTables.h"
#include "platform/HelpArchive.h"

namespace tallyhorn {

/// One opened help file: its contents, its pages by number and by name.  User-interface thread only; the file
/// may hold anything, and no more than bounded parts of it are taken.
class HelpBook {
public:
    /// Null for what is no help file, or has no page to begin with.
    static std::unique_ptr<HelpBook> Open(const std::filesystem::path& file);

    const std::string& Title() const { return facts_.Title; }
    const std::string& StartPage() const { return facts_.StartPage; }
    const std::vector<HelpEntry>& Contents() const { return contents_; }
    /// The start page where no page has this number.
    const std::string& PageOf(std::uint32_t context) const;
    /// The pages that the contents name, each once, in their order.
    std::vector<std::string> Pages() const;
    /// The bytes of a page, a picture or a style sheet; none where the file has none of that name.
    std::string Read(const std::string& name) const;

private:
    explicit HelpBook(HelpFiles files);

    HelpFiles files_;
    HelpFacts facts_;
    std::vector<HelpEntry> contents_;
    std::map<std::uint32_t, std::string> contexts_;
};

}  // namespace tallyhorn
