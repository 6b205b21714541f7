#include "views/messages/RowOrder.h"

#include <algorithm>

namespace tallyhorn {
namespace {

constexpr std::size_t BlockSize = 512;
/// How far Assign fills a block: a full one would be split by the next insertion.
constexpr std::size_t FilledSize = BlockSize * 3 / 4;
/// The capacity reserved for a block: an insertion exceeds BlockSize by one before the block is split.
constexpr std::size_t BlockRoom = BlockSize + 1;

bool IsSelected(const RowEntry& entry) {
    return entry.Selected != 0;
}

RowId IdOf(const RowEntry& entry) {
    return static_cast<RowId>(entry.Id);
}

std::uint32_t CountSelected(const std::vector<RowEntry>& entries) {
    return static_cast<std::uint32_t>(std::count_if(entries.begin(), entries.end(), IsSelected));
}

}  // namespace

int RowOrder::Rule::Compare(const RowEntry& a, const RowEntry& b) const {
    int order = TextFirst ? Texts->Compare(a.Text, b.Text) : 0;
    if (order == 0 && a.Key != b.Key)
        order = a.Key < b.Key ? -1 : 1;
    else if (order == 0 && !TextFirst && Texts != nullptr)
        order = Texts->Compare(a.Text, b.Text);
    return Descending ? -order : order;
}

const RowEntry& RowOrder::At(std::size_t position) const {
    const Place place = Find(position);
    return blocks_[place.Block].Entries[place.Offset];
}

/// Starts a new block if the last one is full.  Splitting the last one instead would leave half-full blocks
/// behind.
void RowOrder::Append(const RowEntry& entry) {
    if (blocks_.empty() || blocks_.back().Entries.size() >= BlockSize) {
        // Nothing is reserved for the first block, because most groups of the tree have only a few children.
        const bool first = blocks_.empty();
        blocks_.emplace_back();
        if (!first)
            blocks_.back().Entries.reserve(BlockRoom);
        starts_.clear();
    }
    blocks_.back().Entries.push_back(entry);
    blocks_.back().Selected += entry.Selected;
    ++size_;
    selectedCount_ += entry.Selected;
}

void RowOrder::PrefetchEnd() const {
#ifdef __GNUC__
    if (!blocks_.empty())
        __builtin_prefetch(blocks_.back().Entries.data() + blocks_.back().Entries.size(), 1);
#endif
}

void RowOrder::Insert(const RowEntry& entry, const Rule& rule) {
    // The end is checked first, since rows mostly arrive in the order of their dates.
    if (blocks_.empty() || rule.Compare(entry, blocks_.back().Entries.back()) >= 0) {
        Append(entry);
        return;
    }
    ++size_;
    selectedCount_ += entry.Selected;
    const Place place = Partition([&](const RowEntry& other) { return rule.Compare(other, entry) <= 0; });
    Block& block = blocks_[place.Block];
    block.Entries.insert(block.Entries.begin() + static_cast<std::ptrdiff_t>(place.Offset), entry);
    block.Selected += entry.Selected;
    starts_.clear();
    if (block.Entries.size() > BlockSize)
        SplitBlock(place.Block);
}

void RowOrder::Assign(const std::vector<RowEntry>& entries) {
    blocks_.clear();
    starts_.clear();
    size_ = entries.size();
    selectedCount_ = 0;
    for (std::size_t first = 0; first < entries.size(); first += FilledSize) {
        const std::size_t last = std::min(first + FilledSize, entries.size());
        Block block;
        block.Entries.reserve(BlockRoom);
        block.Entries.assign(entries.begin() + static_cast<std::ptrdiff_t>(first),
                             entries.begin() + static_cast<std::ptrdiff_t>(last));
        block.Selected = CountSelected(block.Entries);
        selectedCount_ += block.Selected;
        blocks_.push_back(std::move(block));
    }
}

void RowOrder::Resort(const std::function<RowEntry(RowId)>& make, const Rule& rule,
                      const TieBreak& tieBreak) {
    std::vector<RowEntry> entries = Entries();
    for (RowEntry& entry : entries) {
        const std::uint32_t selected = entry.Selected;
        entry = make(IdOf(entry));
        entry.Selected = selected & 1U;
    }
    std::sort(entries.begin(), entries.end(), [&](const RowEntry& a, const RowEntry& b) {
        const int order = rule.Compare(a, b);
        return order != 0 ? order < 0 : tieBreak(IdOf(a)) < tieBreak(IdOf(b));
    });
    Assign(entries);
}

RowOrder::Range RowOrder::EqualRange(const RowEntry& entry, const Rule& rule) const {
    return {Position(Partition([&](const RowEntry& other) { return rule.Compare(other, entry) < 0; })),
            Position(Partition([&](const RowEntry& other) { return rule.Compare(other, entry) <= 0; }))};
}

/// Returns the position of the first of the equal entries that was not added before `entry`.
std::size_t RowOrder::FirstNotBefore(const RowEntry& entry, Range equal, const TieBreak& tieBreak) const {
    const std::uint64_t wanted = tieBreak(IdOf(entry));
    while (equal.First < equal.Last) {
        const std::size_t middle = equal.First + (equal.Last - equal.First) / 2;
        if (tieBreak(IdOf(At(middle))) < wanted)
            equal.First = middle + 1;
        else
            equal.Last = middle;
    }
    return equal.First;
}

std::size_t RowOrder::CountBefore(const RowEntry& entry, const Rule& rule, const TieBreak& tieBreak) const {
    return FirstNotBefore(entry, EqualRange(entry, rule), tieBreak);
}

std::optional<std::size_t> RowOrder::PositionOf(const RowEntry& entry, const Rule& rule,
                                                const TieBreak& tieBreak) const {
    const Range equal = EqualRange(entry, rule);
    const std::size_t position =
        equal.Last - equal.First > 1 ? FirstNotBefore(entry, equal, tieBreak) : equal.First;
    if (position >= equal.Last || At(position).Id != entry.Id)
        return std::nullopt;
    return position;
}

void RowOrder::Select(std::size_t first, std::size_t last, bool selected) {
    Place place = Find(first);
    for (std::size_t left = last - first + 1; left > 0; ++place.Block, place.Offset = 0) {
        Block& block = blocks_[place.Block];
        for (; left > 0 && place.Offset < block.Entries.size(); ++place.Offset, --left) {
            RowEntry& entry = block.Entries[place.Offset];
            if (IsSelected(entry) == selected)
                continue;
            entry.Selected = selected ? 1 : 0;
            block.Selected = selected ? block.Selected + 1 : block.Selected - 1;
            selectedCount_ = selected ? selectedCount_ + 1 : selectedCount_ - 1;
        }
    }
}

void RowOrder::ClearSelection() {
    for (Block& block : blocks_) {
        if (block.Selected == 0)
            continue;
        for (RowEntry& entry : block.Entries)
            entry.Selected = 0;
        block.Selected = 0;
    }
    selectedCount_ = 0;
}

std::vector<RowId> RowOrder::SelectedIds() const {
    std::vector<RowId> ids;
    ids.reserve(selectedCount_);
    for (const Block& block : blocks_) {
        if (block.Selected == 0)
            continue;
        for (const RowEntry& entry : block.Entries) {
            if (IsSelected(entry))
                ids.push_back(IdOf(entry));
        }
    }
    return ids;
}

std::vector<RowId> RowOrder::RemoveSelected() {
    std::vector<RowId> ids;
    ids.reserve(selectedCount_);
    for (Block& block : blocks_) {
        if (block.Selected != 0)
            RemoveFrom(
                block, [](std::size_t, const RowEntry& entry) { return IsSelected(entry); }, ids);
    }
    JoinSmallBlocks();
    return ids;
}

std::vector<RowId> RowOrder::RemoveAt(std::span<const std::size_t> positions) {
    std::vector<RowId> ids;
    ids.reserve(positions.size());
    std::size_t start = 0;
    for (Block& block : blocks_) {
        const std::size_t end = start + block.Entries.size();
        if (ids.size() < positions.size() && positions[ids.size()] < end) {
            const auto goes = [&](std::size_t offset, const RowEntry&) {
                return ids.size() < positions.size() && positions[ids.size()] == start + offset;
            };
            RemoveFrom(block, goes, ids);
        }
        start = end;
    }
    JoinSmallBlocks();
    return ids;
}

template <typename Goes>
void RowOrder::RemoveFrom(Block& block, Goes goes, std::vector<RowId>& removed) {
    const std::size_t size = block.Entries.size();
    auto kept = block.Entries.begin();
    std::uint32_t selected = 0;
    for (std::size_t offset = 0; offset < size; ++offset) {
        const RowEntry& entry = block.Entries[offset];
        if (goes(offset, entry)) {
            removed.push_back(IdOf(entry));
            selected += entry.Selected;
        } else {
            *kept++ = entry;
        }
    }
    block.Entries.erase(kept, block.Entries.end());
    block.Selected -= selected;
    selectedCount_ -= selected;
    size_ -= size - block.Entries.size();
}

std::vector<RowEntry> RowOrder::Entries() const {
    std::vector<RowEntry> entries;
    entries.reserve(size_);
    for (const Block& block : blocks_)
        entries.insert(entries.end(), block.Entries.begin(), block.Entries.end());
    return entries;
}

RowOrder::Place RowOrder::Find(std::size_t position) const {
    const std::vector<std::size_t>& starts = Starts();
    const auto after = std::upper_bound(starts.begin(), starts.end(), position);
    const auto block = static_cast<std::size_t>(after - starts.begin()) - 1;
    return {block, position - starts[block]};
}

/// Returns the place of the first entry for which `sortsBefore` is false, or the place after the last entry.
template <typename SortsBefore>
RowOrder::Place RowOrder::Partition(SortsBefore sortsBefore) const {
    const auto after = std::partition_point(blocks_.begin(), blocks_.end(), [&](const Block& block) {
        return sortsBefore(block.Entries.front());
    });
    if (after == blocks_.begin())
        return {};
    const Block& block = *(after - 1);
    const auto entry = std::partition_point(block.Entries.begin(), block.Entries.end(), sortsBefore);
    return {static_cast<std::size_t>(after - blocks_.begin()) - 1,
            static_cast<std::size_t>(entry - block.Entries.begin())};
}

std::size_t RowOrder::Position(Place place) const {
    return blocks_.empty() ? 0 : Starts()[place.Block] + place.Offset;
}

void RowOrder::SplitBlock(std::size_t index) {
    Block& block = blocks_[index];
    const auto middle = block.Entries.begin() + static_cast<std::ptrdiff_t>(block.Entries.size() / 2);
    Block half;
    half.Entries.reserve(BlockRoom);
    half.Entries.assign(middle, block.Entries.end());
    half.Selected = CountSelected(half.Entries);
    block.Entries.erase(middle, block.Entries.end());
    block.Selected -= half.Selected;
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(index) + 1, std::move(half));
    starts_.clear();
}

void RowOrder::JoinSmallBlocks() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        Block& block = blocks_[i];
        if (kept > 0 && blocks_[kept - 1].Entries.size() + block.Entries.size() <= BlockSize / 2) {
            Block& before = blocks_[kept - 1];
            before.Entries.insert(before.Entries.end(), block.Entries.begin(), block.Entries.end());
            before.Selected += block.Selected;
        } else if (!block.Entries.empty()) {
            if (kept != i)
                blocks_[kept] = std::move(block);
            ++kept;
        }
    }
    blocks_.resize(kept);
    starts_.clear();
}

const std::vector<std::size_t>& RowOrder::Starts() const {
    if (starts_.size() == blocks_.size())
        return starts_;
    starts_.clear();
    std::size_t start = 0;
    for (const Block& block : blocks_) {
        starts_.push_back(start);
        start += block.Entries.size();
    }
    return starts_;
}

}  // namespace tallyhorn
