#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyhorn {

/// Splits a list of short cases: "a||b" becomes "a", "" and "b".
inline std::vector<std::string> SplitAtBars(std::string_view text) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == '|')
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

/// Splits a list of pairs: "a=b|c=d" becomes {"a", "b"} and {"c", "d"}.
inline std::vector<std::pair<std::string, std::string>> SplitPairs(std::string_view text) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const std::string& part : SplitAtBars(text)) {
        const std::size_t equals = part.find('=');
        pairs.emplace_back(part.substr(0, equals), part.substr(equals + 1));
    }
    return pairs;
}

}  // namespace tallyhorn
