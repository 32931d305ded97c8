#include "embedded-gui-engine/ringsector.h"

#include <algorithm>
#include <cmath>

namespace Engine {

namespace {

/// Scanlines of one octant: those in which the circle still reaches past the diagonal.
std::vector<std::int32_t> reachTable(std::int64_t radius) {
    std::vector<std::int32_t> table;
    for (std::int64_t y = 0; y < radius; ++y) {
        const double reach = std::sqrt(static_cast<double>(radius * radius - y * y));
        if (static_cast<std::int64_t>(reach) < y + 1) break;
        table.push_back(static_cast<std::int32_t>(256.0 * reach));
    }
    return table;
}

}  // namespace

void RingSector::prepare() {
    const std::int32_t outer = std::clamp(outerRadius, 0, maxRadius);
    const std::int32_t inner = std::clamp(innerRadius, 0, maxRadius);
    if (outer == tabledOuter_ && inner == tabledInner_) return;
    outerTable_ = reachTable(outer);
    innerTable_ = reachTable(inner);
    while (innerTable_.size() < outerTable_.size())
        innerTable_.push_back(static_cast<std::int32_t>(innerTable_.size()) * 256);
    tabledOuter_ = outer;
    tabledInner_ = inner;
}

}  // namespace Engine
