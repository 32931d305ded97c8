#include "unit/ctl/nearest.h"

#include "unit/server/store.h"

namespace Unit {

std::string suggestion(const std::string& word, const std::vector<std::string>& candidates) {
    const std::string* best = nullptr;
    std::size_t closest = 3;
    for (const auto& candidate : candidates) {
        const std::size_t distance = editDistance(word, candidate);
        if (distance >= closest) continue;
        closest = distance;
        best = &candidate;
    }
    return best == nullptr ? "" : " Did you mean " + *best + "?";
}

}  // namespace Unit
