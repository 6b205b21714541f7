#include "views/messages/RankBitmap.h"

#include <bit>
#include <numeric>
#include <utility>

namespace tallyhorn {
namespace {

constexpr std::uint64_t Bit(std::size_t offset) {
    return std::uint64_t{1} << offset;
}

}  // namespace

RankBitmap::Index RankBitmap::Add() {
    const std::size_t index = size_++;
    if (index / WordBits == words_.size())
        words_.push_back(0);
    if (index / WordBits / WordsPerGroup == groupCounts_.size())
        groupCounts_.push_back(0);
    words_.back() |= Bit(index % WordBits);
    ++groupCounts_.back();
    ++setBits_;
    return static_cast<Index>(index);
}

void RankBitmap::Remove(Index index) {
    words_[index / WordBits] &= ~Bit(index % WordBits);
    --groupCounts_[index / WordBits / WordsPerGroup];
    --setBits_;
}

void RankBitmap::Clear() {
    *this = RankBitmap();
}

std::size_t RankBitmap::Rank(Index index) const {
    const std::size_t word = index / WordBits;
    const std::size_t group = word / WordsPerGroup;
    std::size_t before = std::accumulate(
        groupCounts_.begin(), groupCounts_.begin() + static_cast<std::ptrdiff_t>(group), std::size_t{0});
    for (std::size_t i = group * WordsPerGroup; i < word; ++i)
        before += static_cast<std::size_t>(std::popcount(words_[i]));
    return before + static_cast<std::size_t>(std::popcount(words_[word] & (Bit(index % WordBits) - 1))) + 1;
}

RankBitmap::NewIndexes RankBitmap::Compact() {
    const std::size_t left = setBits_;
    NewIndexes indexes(std::move(words_));
    Clear();
    words_.reserve(left / WordBits + 1);
    for (std::size_t i = 0; i < left; ++i)
        Add();
    return indexes;
}

RankBitmap::NewIndexes::NewIndexes(std::vector<std::uint64_t> words) : words_(std::move(words)) {
    setBefore_.reserve(words_.size());
    Index before = 0;
    for (const std::uint64_t word : words_) {
        setBefore_.push_back(before);
        before += static_cast<Index>(std::popcount(word));
    }
}

RankBitmap::Index RankBitmap::NewIndexes::operator()(Index old) const {
    const std::size_t word = old / WordBits;
    return setBefore_[word] + static_cast<Index>(std::popcount(words_[word] & (Bit(old % WordBits) - 1)));
}

}  // namespace tallyhorn
