#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tallyhorn {

/// Hashes texts and numbers with a random seed, which each process chooses at its start so that a sender
/// cannot construct notifications whose texts all have the same hash.
class SeededHash {
public:
    std::size_t operator()(std::string_view text) const {
        std::uint64_t hash = Seed ^ text.size();
        while (text.size() > sizeof(std::uint64_t)) {
            hash = Mix(hash, Load(text.data(), sizeof(std::uint64_t)));
            text.remove_prefix(sizeof(std::uint64_t));
        }
        return static_cast<std::size_t>(Mix(hash, Load(text.data(), text.size())));
    }

    std::size_t operator()(std::uint64_t number) const { return static_cast<std::size_t>(Mix(Seed, number)); }

private:
    static constexpr std::uint64_t Half = 0xFFFFFFFFU;

    static std::uint64_t Load(const char* bytes, std::size_t size) {
        std::uint64_t word = 0;
        if (size > 0)
            std::memcpy(&word, bytes, size);
        return word;
    }
    /// Multiplies the numbers and combines the two halves of the 128-bit product by exclusive or.
    static std::uint64_t Fold(std::uint64_t a, std::uint64_t b) {
#ifdef __SIZEOF_INT128__
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
#else
        const std::uint64_t lower = (a & Half) * (b & Half);
        const std::uint64_t cross = (a >> 32U) * (b & Half) + (lower >> 32U);
        const std::uint64_t middle = (a & Half) * (b >> 32U) + (cross & Half);
        return (a * b) ^ ((a >> 32U) * (b >> 32U) + (cross >> 32U) + (middle >> 32U));
#endif
    }
    /// Both factors depend on `hash` and therefore on the seed.
    static std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
        constexpr std::uint64_t Odd = 0x9E3779B97F4A7C15U;
        return Fold(hash ^ word ^ Odd, (hash | 1U) + Odd);
    }
    static const std::uint64_t Seed;
};

}  // namespace tallyhorn
