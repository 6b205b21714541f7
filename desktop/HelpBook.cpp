#include "desktop/HelpBook.h"

#include <algorithm>
#include <utility>

namespace tallyhorn {
namespace {

constexpr std::size_t LargestFile = 1024 * 1024;

}  // namespace

HelpBook::HelpBook(std::unique_ptr<HelpArchive> archive) : archive_(std::move(archive)) {
    const auto read = [this](const std::string& name) { return Read(name).value_or(""); };
    facts_ = ParseHelpFacts(read("#SYSTEM"));
    contents_ = ParseHelpContents(read(facts_.ContentsFile));
    contexts_ = ParseHelpContexts(read("#IVB"), read("#STRINGS"));
}

std::unique_ptr<HelpBook> HelpBook::Open(const std::filesystem::path& file) {
    std::unique_ptr<HelpArchive> archive = OpenHelpArchive(file);
    if (archive == nullptr)
        return nullptr;
    std::unique_ptr<HelpBook> book(new HelpBook(std::move(archive)));
    return book->Read(book->StartPage()) ? std::move(book) : nullptr;
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

std::optional<std::string> HelpBook::Read(const std::string& name) const {
    return name.empty() ? std::nullopt : archive_->Read(name, LargestFile);
}

}  // namespace tallyhorn
