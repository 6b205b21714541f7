#pragma once

#include <cstdint>

#include "views/ServerDisplay.h"

namespace tallyhorn {

/// Shows the user that a long piece of work is under way, and how far it has come, as long as it lives.
/// User-interface thread only.
class LongWork {
public:
    LongWork(ServerDisplay& display, std::uint64_t total) : display_(display), total_(total) {
        display_.BeginWork();
    }
    ~LongWork() { display_.EndWork(); }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Not after every step: a look at the clock costs as much as a short one.
    void Show(std::uint64_t done) { display_.ShowProgress(done, total_); }

private:
    ServerDisplay& display_;
    std::uint64_t total_;
};

}  // namespace tallyhorn
