#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace tallyhorn {

/// Returns the 64-bit XXH3 hash of the bytes.  The value is the same on every machine and in every version,
/// so that it may be kept in a file.  It finds accidental damage; it does not protect against an attacker.
std::uint64_t Hash64(std::string_view bytes);

/// Owns the state of a hash whose bytes arrive in pieces.  For one thread at a time.
class StreamingHash64 {
public:
    StreamingHash64();
    ~StreamingHash64();
    StreamingHash64(const StreamingHash64&) = delete;
    StreamingHash64& operator=(const StreamingHash64&) = delete;

    void Add(std::string_view bytes);
    /// Returns what Hash64 returns for all bytes added so far.
    std::uint64_t Value() const;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace tallyhorn
