#include <gtest/gtest.h>

#include <string>

#include "platform/Hash64.h"

namespace tallyhorn {
namespace {

/// Files contain these values, so that they must never change.
TEST(Hash64Test, ValuesAreFixedAndDoNotDependOnThePieces) {
    std::string bytes;
    for (int i = 0; i < 100'000; ++i)
        bytes += static_cast<char>(i * 7 + i / 251);
    const std::pair<std::size_t, std::uint64_t> cases[] = {
        {0, 0x2D06800538D394C2},   {1, 0xc44bdff4074eecdb},    {8, 0xb88dee77f6bf6980},
        {200, 0x7c64f3b17285e96a}, {1000, 0x1a86fba1101018cf}, {100'000, 0x4e16d63e05fac6ed}};
    for (const auto& [size, expected] : cases) {
        const std::string_view text = std::string_view(bytes).substr(0, size);
        EXPECT_EQ(Hash64(text), expected) << size;
        for (const std::size_t piece : {1U, 63U, 4096U}) {
            StreamingHash64 hash;
            for (std::size_t at = 0; at < size; at += piece)
                hash.Add(text.substr(at, piece));
            EXPECT_EQ(hash.Value(), expected) << size << " in pieces of " << piece;
        }
    }
}

}  // namespace
}  // namespace tallyhorn
