#include "unit/ctl/nearest.h"

#include <algorithm>

#include "unit/server/store.h"

namespace Unit {

std::string suggestion(const std::string& word, const std::vector<std::string>& candidates) {
    const std::string* best = nullptr;
    std::size_t closest = std::min<std::size_t>(3, word.size());  // of a short word something must be left
    for (const auto& candidate : candidates) {
        const std::size_t distance = editDistance(word, candidate);
        if (distance >= closest) continue;
        closest = distance;
        best = &candidate;
    }
    return best == nullptr ? "" : " Did you mean " + *best + "?";
}

}  // namespace Unit
