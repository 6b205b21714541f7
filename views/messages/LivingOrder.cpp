#include "views/messages/LivingOrder.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

namespace tallyhorn {

LivingOrder::Number LivingOrder::Add() {
    const std::size_t number = given_++;
    if (number / WordBits == words_.size())
        words_.push_back(0);
    if (number / WordBits / WordsOfGroup == groupCounts_.size())
        groupCounts_.push_back(0);
    words_.back() |= std::uint64_t{1} << (number % WordBits);
    ++groupCounts_.back();
    ++size_;
    return static_cast<Number>(number);
}

void LivingOrder::Remove(Number number) {
    words_[number / WordBits] &= ~(std::uint64_t{1} << (number % WordBits));
    --groupCounts_[number / WordBits / WordsOfGroup];
    --size_;
}

void LivingOrder::Clear() {
    *this = LivingOrder();
}

std::size_t LivingOrder::PositionOf(Number number) const {
    const std::size_t word = number / WordBits;
    const std::size_t group = word / WordsOfGroup;
    std::size_t before = std::accumulate(
        groupCounts_.begin(), groupCounts_.begin() + static_cast<std::ptrdiff_t>(group), std::size_t{0});
    for (std::size_t i = group * WordsOfGroup; i < word; ++i)
        before += static_cast<std::size_t>(std::popcount(words_[i]));
    const std::uint64_t earlier = (std::uint64_t{1} << (number % WordBits)) - 1;
    return before + static_cast<std::size_t>(std::popcount(words_[word] & earlier)) + 1;
}

LivingOrder::NewNumbers LivingOrder::Renumber() {
    const std::size_t left = size_;
    NewNumbers numbers(std::move(words_));
    Clear();
    words_.reserve(left / WordBits + 1);
    for (std::size_t i = 0; i < left; ++i)
        Add();
    return numbers;
}

LivingOrder::NewNumbers::NewNumbers(std::vector<std::uint64_t> words) : words_(std::move(words)) {
    starts_.reserve(words_.size());
    Number before = 0;
    for (const std::uint64_t word : words_) {
        starts_.push_back(before);
        before += static_cast<Number>(std::popcount(word));
    }
}

LivingOrder::Number LivingOrder::NewNumbers::operator()(Number old) const {
    const std::uint64_t earlier = (std::uint64_t{1} << (old % WordBits)) - 1;
    return starts_[old / WordBits] + static_cast<Number>(std::popcount(words_[old / WordBits] & earlier));
}

}  // namespace tallyhorn
