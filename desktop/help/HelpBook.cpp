#include "desktop/help/HelpBook.h"

#include <algorithm>
#include <utility>

namespace tallyhorn {

HelpBook::HelpBook(HelpFiles files)
    : files_(std::move(files)),
      facts_(ParseHelpFacts(Read("#SYSTEM"))),
      contents_(ParseHelpContents(Read(facts_.ContentsFile))),
      contexts_(ParseHelpContexts(Read("#IVB"), Read("#STRINGS"))) {}

std::unique_ptr<HelpBook> HelpBook::Open(const std::filesystem::path& file) {
    std::unique_ptr<HelpBook> book(new HelpBook(UnpackHelpFile(file)));
    return book->files_.contains(book->StartPage()) ? std::move(book) : nullptr;
}

const std::string& HelpBook::PageOf(std::uint32_t context) const {
    const auto found = contexts_.find(context);
    return found == contexts_.end() ? StartPage() : found->second;
}

std::vector<std::string> HelpBook::Pages() const {
    std::vector<std::string> pages;
    for (const HelpEntry& entry : contents_) {
        std::string page = entry.Local.substr(0, entry.Local.find('#'));
        if (!page.empty() && std::find(pages.begin(), pages.end(), page) == pages.end())
            pages.push_back(std::move(page));
    }
    return pages;
}

std::string HelpBook::Read(const std::string& name) const {
    const auto found = files_.find(name);
    return found == files_.end() ? std::string() : found->second;
}

}  // namespace tallyhorn
