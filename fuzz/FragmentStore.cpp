// Feeds datagrams, one per line (NUL ends a line too), to the FragmentStore, mixed with calls of its other
// functions, and checks its invariants.

#include "reception/FragmentStore.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tallyhorn;
    constexpr std::string_view Ends("\n\0", 2);
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    FragmentStore store;
    Clock::TimePoint now{};
    std::size_t added = 0;
    std::size_t taken = 0;
    std::size_t received = 0;
    const auto collect = [&] {
        store.Collect([&](std::string&& text) {
            ++taken;
            received += text.size();
        });
    };
    while (!rest.empty()) {
        const std::string_view datagram = rest.substr(0, rest.find_first_of(Ends));
        rest.remove_prefix(std::min(datagram.size() + 1, rest.size()));
        store.Add(datagram, now);
        ++added;
        now += std::chrono::seconds(datagram.size() % 8);
        if (datagram == "collect")
            collect();
        if (datagram == "expire")
            store.Expire(now);
        if (datagram == "reset")
            store.Reset();
        Require(store.UpperBound() <= std::max<std::size_t>(1000, 2 * added));
    }
    collect();
    // The store must not return more texts or bytes than it was given.
    Require(taken <= added && received <= size);
    store.Reset();
    Require(store.UpperBound() == 1000);
    return 0;
}
