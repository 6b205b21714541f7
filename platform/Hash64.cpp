#include "platform/Hash64.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace tallyhorn {

struct StreamingHash64::State {
    XXH3_state_t Hash;
};

std::uint64_t Hash64(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

StreamingHash64::StreamingHash64() : state_(std::make_unique<State>()) {
    XXH3_64bits_reset(&state_->Hash);
}

StreamingHash64::~StreamingHash64() = default;

void StreamingHash64::Add(std::string_view bytes) {
    XXH3_64bits_update(&state_->Hash, bytes.data(), bytes.size());
}

std::uint64_t StreamingHash64::Value() const {
    return XXH3_64bits_digest(&state_->Hash);
}

}  // namespace tallyhorn
