#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/ringsector.h"

#include <algorithm>
#include <cmath>

#include "engine/src/raster/draw.h"

namespace Engine {

namespace {

constexpr int fullTurn = 3600;
constexpr int octantWidth = 450;
constexpr int full = 255;

/// A place in an octant's own coordinates: u along the axis that bounds the octant, v across it, u >= v >= 0. The axis
/// and the diagonal are shared with the neighbours, which see their places at the same u and v.
struct Cell {
    int u;
    int v;
};

/// Signs and roles of the octants, clockwise from the right with y down.
struct Octant {
    int uToX, uToY, vToX, vToY;
};
constexpr Octant octants[8] = {{1, 0, 0, 1},   {0, 1, 1, 0},   {0, 1, -1, 0}, {-1, 0, 0, 1},
                               {-1, 0, 0, -1}, {0, -1, -1, 0}, {0, -1, 1, 0}, {1, 0, 0, -1}};

/// Odd octants measure from their far edge.
constexpr bool isMirrored(int octant) {
    return (octant & 1) != 0;
}

/// Integral of clamp(h, 0, 1) from 0 to h.
float areaUpTo(float h) {
    if (h <= 0) return 0;
    return h < 1 ? h * h / 2 : h - 0.5F;
}

/// A straight edge of the sector, through the centre of the ring.
class Edge {
  public:
    explicit Edge(std::int64_t angle) : octant_(static_cast<int>(angle / octantWidth)) {
        float degrees = static_cast<float>(angle - std::int64_t{octant_} * octantWidth) / 10;
        if (isMirrored(octant_)) degrees = 45 - degrees;
        slope_ = std::tan(degrees * 0.017453292F);
    }

    int octant() const { return octant_; }

    /// How much of the cell, 0 to 255, lies at smaller angles than the edge: the rise of the edge, integrated over the
    /// cell's column.
    int before(Cell cell) const {
        const float left = (static_cast<float>(cell.u) - 0.5F) * slope_ - (static_cast<float>(cell.v) - 0.5F);
        const float below =
            slope_ < 1e-6F ? std::clamp(left, 0.0F, 1.0F) : (areaUpTo(left + slope_) - areaUpTo(left)) / slope_;
        const int part = std::clamp(static_cast<int>(below * full + 0.5F), 0, full);
        return isMirrored(octant_) ? full - part : part;
    }
    int after(Cell cell) const { return full - before(cell); }

  private:
    int octant_;
    float slope_;  ///< v per u, 0 to 1
};

/// Coverage of column u by the span from `begin` to `end`, both 24.8.
int spanCoverage(int u, std::int32_t begin, std::int32_t end) {
    const std::int32_t left = std::max(begin, u * 256);
    const std::int32_t right = std::min(end, (u + 1) * 256);
    return std::min(right - left, full);
}

/// Values of one coordinate, `begin` to `end` - 1.
struct Range {
    std::int64_t begin;
    std::int64_t end;
};

/// What may be drawn in, relative to the centre.
struct Window {
    Range x;
    Range y;

    /// The values of a coordinate that runs by `toX` on one axis, or by `toY` on the other.
    Range of(int toX, int toY) const {
        const Range& range = toX != 0 ? x : y;
        return toX + toY > 0 ? range : Range{1 - range.end, 1 - range.begin};
    }
};

/// Walks the octants of a sector and calls plot(dx, dy, coverage) once for every pixel of the window that the sector
/// touches.
template <typename Plot>
class SectorScan {
  public:
    SectorScan(const RingSector& ring, const Window& window, std::int64_t start, std::int64_t end, Plot plot)
        : ring_(ring), window_(window), start_(start), end_(end), whole_(end - start >= fullTurn), plot_(plot) {}

    void run() {
        const int last = whole_ ? start_.octant() + 7 : end_.octant();
        for (int octant = start_.octant(); octant <= last; ++octant) drawOctant(octant, octant == last);
    }

  private:
    // The boundary to the octant before belongs to this one; the boundary to the octant behind to that one, if there is
    // any. So no pixel is mixed twice.
    void drawOctant(int octant, bool isLast) {
        const bool drawsEnd = isLast && !whole_;
        const bool drawsAxis = isMirrored(octant) ? drawsEnd : true;
        const bool drawsDiagonal = isMirrored(octant) ? true : drawsEnd;
        const Octant& o = octants[octant & 7];
        const Range us = window_.of(o.uToX, o.uToY);
        const Range vs = window_.of(o.vToX, o.vToY);
        const auto& outer = ring_.outerTable();
        const auto lines = static_cast<std::int64_t>(outer.size());
        for (auto v = std::max<std::int64_t>(drawsAxis ? 0 : 1, vs.begin); v < std::min(lines, vs.end); ++v) {
            const std::int32_t begin = ring_.innerTable()[static_cast<std::size_t>(v)];
            const std::int32_t end = outer[static_cast<std::size_t>(v)];
            const std::int64_t first = std::max<std::int64_t>({begin >> 8, drawsDiagonal ? v : v + 1, us.begin});
            for (std::int64_t u = first; u < us.end && u * 256 < end; ++u)
                drawCell(octant, {static_cast<int>(u), static_cast<int>(v)}, begin, end);
        }
    }

    void drawCell(int octant, Cell cell, std::int32_t begin, std::int32_t end) {
        int coverage = spanCoverage(cell.u, begin, end);
        const bool isCentre = cell.u == 0 && cell.v == 0;
        if (isCentre && octant != start_.octant()) return;
        if (!whole_) {
            const bool onStart = isMirrored(octant) ? cell.u == cell.v : cell.v == 0;
            if (octant == start_.octant() || (onStart && octant == start_.octant() + 1))
                coverage -= start_.before(cell);
            if (octant == end_.octant()) coverage -= end_.after(cell);
        }
        if (coverage <= 0) return;
        const Octant& o = octants[octant & 7];
        plot_(cell.u * o.uToX + cell.v * o.vToX, cell.u * o.uToY + cell.v * o.vToY, coverage);
    }

    const RingSector& ring_;
    Window window_;
    Edge start_;
    Edge end_;
    bool whole_;
    Plot plot_;
};

/// Rounds up where every other blend rounds down.
std::uint16_t mixUp(std::uint16_t source, std::uint16_t target, int coverage) {
    return static_cast<std::uint16_t>((coverage * source + (full - coverage) * target + full) >> 8);
}

void plotPixel(std::uint32_t& pixel, const TargetColors<std::uint32_t>& colors, std::uint32_t, int coverage) {
    using namespace Raster;
    const Color color = colors.foreground;
    pixel = (color & 0xff000000U) |
            joinColor(mixUp(red(color), red(pixel), coverage), mixUp(green(color), green(pixel), coverage),
                      mixUp(blue(color), blue(pixel), coverage));
}

void plotPixel(std::uint16_t& pixel, const TargetColors<std::uint16_t>& colors, std::uint32_t, int coverage) {
    using namespace Raster;
    const Color color = colors.foregroundWord;
    pixel = static_cast<std::uint16_t>((colors.foreground & 0x8000) |
                                       join1555(mixUp(red(color), red1555(pixel), coverage),
                                                mixUp(green(color), green1555(pixel), coverage),
                                                mixUp(blue(color), blue1555(pixel), coverage)));
}

/// As a mask's sample of that coverage.
void plotPixel(std::uint8_t& pixel, const TargetColors<std::uint8_t>& colors, std::uint32_t sampleBits, int coverage) {
    const std::uint64_t max = std::min<std::uint64_t>(Raster::sampleMax(sampleBits), full);
    const auto sample = static_cast<unsigned>(static_cast<unsigned>(coverage) * max / full);
    if (sample != 0) pixel = static_cast<std::uint8_t>(colors.foreground + sample);
}

}  // namespace

template <typename T>
void Framebuffer<T>::drawRingSector(RingSector& ring, int cx, int cy, int angleA, int angleB) {
    const Raster::Area bounds = intersect(Raster::Area::of(clip_), {0, 0, canvas().width, canvas().height});
    if (bounds.empty() || angleA == angleB || ring.outerRadius > RingSector::maxRadius) return;
    const std::int64_t reach = ring.outerRadius;
    if (cx + reach < bounds.x || cx - reach > bounds.right() || cy + reach < bounds.y || cy - reach > bounds.bottom())
        return;

    const std::int64_t lower = std::min(angleA, angleB);
    const std::int64_t length = std::max(angleA, angleB) - lower;
    const std::int64_t start = (lower % fullTurn + fullTurn) % fullTurn;
    ring.prepare();
    const Window window{{bounds.x - std::int64_t{cx}, bounds.right() - std::int64_t{cx}},
                        {bounds.y - std::int64_t{cy}, bounds.bottom() - std::int64_t{cy}}};
    SectorScan(ring, window, start, start + std::min<std::int64_t>(length, fullTurn),
               [&](int dx, int dy, int coverage) {
                   plotPixel(pixels()[cx + dx + std::ptrdiff_t{canvas().width} * (cy + dy)], colors_, sampleBits_,
                             coverage);
               })
        .run();
}

template void Framebuffer<unsigned char>::drawRingSector(RingSector&, int, int, int, int);
template void Framebuffer<unsigned short>::drawRingSector(RingSector&, int, int, int, int);
template void Framebuffer<unsigned int>::drawRingSector(RingSector&, int, int, int, int);

}  // namespace Engine
