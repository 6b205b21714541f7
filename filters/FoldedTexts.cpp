#include "filters/FoldedTexts.h"

#include <bit>
#include <cassert>
#include <cstring>
#include <utility>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::size_t FirstSlots = 16;
/// 2^64 over the golden ratio: spreads the low bits of a number over its high ones.
constexpr std::uint64_t Spread = 0x9E3779B97F4A7C15U;

}  // namespace

FoldedTexts::Folded::Folded(std::string_view text) : Size(static_cast<std::uint8_t>(text.size())) {
    std::uint64_t hash = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        Characters[i] = ToUpper(text[i]);
        hash = std::rotl(hash, 5) ^ static_cast<unsigned char>(Characters[i]);
    }
    Hash = static_cast<std::uint32_t>((hash * Spread) >> 32U);
}

FoldedTexts::Id FoldedTexts::Add(std::string_view text) {
    assert(text.size() <= MaxSize);
    if (slots_.size() <= 2 * std::size_t{count_})
        Grow();
    const Folded folded(text);
    Slot& slot = slots_[Locate(folded)];
    if (slot.Number == Unknown)
        slot = {folded, ++count_};
    return slot.Number;
}

FoldedTexts::Id FoldedTexts::Find(std::string_view text) const {
    if (count_ == 0 || text.size() > MaxSize)
        return Unknown;
    return slots_[Locate(Folded(text))].Number;
}

std::size_t FoldedTexts::Locate(const Folded& text) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = text.Hash & mask;
    while (slots_[place].Number != Unknown) {
        const Folded& held = slots_[place].Text;
        if (held.Hash == text.Hash && held.Size == text.Size &&
            std::memcmp(held.Characters.data(), text.Characters.data(), text.Size) == 0)
            break;
        place = (place + 1) & mask;
    }
    return place;
}

void FoldedTexts::Grow() {
    const std::vector<Slot> old =
        std::exchange(slots_, std::vector<Slot>(slots_.empty() ? FirstSlots : 2 * slots_.size()));
    for (const Slot& slot : old) {
        if (slot.Number != Unknown)
            slots_[Locate(slot.Text)] = slot;
    }
}

}  // namespace tallyhorn
