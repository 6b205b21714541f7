#pragma once

#include <map>
#include <string>

#include "views/messages/ArrivalJournal.h"

namespace tallyhorn {

/// Remembers the arrivals that wait.
class FakeArrivalJournal final : public ArrivalJournal {
public:
    std::uint64_t Hold(Channel, std::string_view text) override {
        Held.emplace(++last_, text);
        return last_;
    }
    void BeginHandling(Channel, std::uint64_t number) override { Held.erase(number); }
    void EndHandling() override {}

    std::map<std::uint64_t, std::string> Held;

private:
    std::uint64_t last_ = 0;
};

}  // namespace tallyhorn
