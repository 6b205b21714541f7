#include "records/SeededHash.h"

#include <random>

namespace tallyhorn {
namespace {

std::uint64_t RandomSeed() {
    std::random_device device;
    const std::uint64_t high = device();
    return (high << 32U) | device();
}

}  // namespace

std::uint64_t SeededHash::Seed() {
    static const std::uint64_t seed = RandomSeed();
    return seed;
}

}  // namespace tallyhorn
