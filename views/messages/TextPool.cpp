#include "views/messages/TextPool.h"

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

std::uint64_t MakeSortPrefix(std::string_view text) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof(prefix); ++i) {
        const char character = i < text.size() ? ToUpper(text[i]) : '\0';
        prefix = (prefix << 8U) | static_cast<unsigned char>(character);
    }
    return prefix;
}

}  // namespace

TextId TextPool::Add(std::string_view text) {
    if (const auto known = ids_.find(text); known != ids_.end()) {
        ++entries_[known->second].Users;
        return known->second;
    }
    TextId id = static_cast<TextId>(entries_.size());
    if (free_.empty()) {
        entries_.emplace_back();
    } else {
        id = free_.back();
        free_.pop_back();
    }
    entries_[id] = {std::string(text), MakeSortPrefix(text), 1};
    ids_.emplace(entries_[id].Text, id);
    return id;
}

std::optional<TextId> TextPool::Find(std::string_view text) const {
    const auto known = ids_.find(text);
    return known == ids_.end() ? std::nullopt : std::optional(known->second);
}

void TextPool::Release(TextId id) {
    Entry& entry = entries_[id];
    if (--entry.Users > 0)
        return;
    ids_.erase(entry.Text);
    entry = Entry();
    free_.push_back(id);
}

int TextPool::Compare(TextId a, TextId b) const {
    if (a == b)
        return 0;
    return CompareNoCase(entries_[a].Text, entries_[b].Text);
}

}  // namespace tallyhorn
