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

const std::uint64_t SeededHash::Seed = RandomSeed();

}  // namespace tallyhorn
