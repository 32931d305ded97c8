#pragma once

#include <cstdint>
#include <vector>

namespace Engine {

/// A ring whose sectors Painter::drawRingSector draws. The two tables hold, in 24.8 fixed point, how far the circle
/// reaches in each scanline of one octant; they are made on the first draw and again when a radius has changed.
struct RingSector {
    /// Pixels. Below 0 counts as 0; a ring with a radius above this is not drawn.
    static constexpr std::int32_t maxRadius = 65535;

    constexpr RingSector(std::int32_t outer, std::int32_t inner) : outerRadius(outer), innerRadius(inner) {}

    /// Brings both tables up to date. Allocates only when a radius has changed since the last call.
    void prepare();

    /// 24.8 reach of the outer circle in scanline y; as long as the octant has scanlines.
    const std::vector<std::int32_t>& outerTable() const { return outerTable_; }
    /// 24.8 reach of the inner circle in scanline y; beyond the circle the octant's diagonal. At least as long as the
    /// outer table.
    const std::vector<std::int32_t>& innerTable() const { return innerTable_; }

    std::int32_t outerRadius;
    std::int32_t innerRadius;

  private:
    std::vector<std::int32_t> outerTable_;
    std::vector<std::int32_t> innerTable_;
    std::int32_t tabledOuter_ = -1;
    std::int32_t tabledInner_ = -1;
};

}  // namespace Engine
