#include "apps/gui/testcard/testcard.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>

namespace {

using Point = TestCard::Point;

constexpr std::uint32_t white = 0xffffffff;
constexpr std::uint32_t ground = 0xff1c2733;
constexpr std::uint32_t lines = 0xff3a4b5c;
constexpr std::uint32_t sea = 0xff2a5d8f;
constexpr std::uint32_t signal = 0xffff5a4f;
constexpr int cell = 20;

float distanceToSegment(Point p, Point a, Point b) {
    const Point ab = {b.x - a.x, b.y - a.y}, ap = {p.x - a.x, p.y - a.y};
    const float along = std::clamp((ap.x * ab.x + ap.y * ab.y) / (ab.x * ab.x + ab.y * ab.y), 0.0F, 1.0F);
    return std::hypot(ap.x - ab.x * along, ap.y - ab.y * along);
}

/// A tern in flight, of two swept wings, a body and a forked tail: the thickness of each stroke runs out to a point.
struct Stroke {
    Point from, to;
    float thickFrom, thickTo;
};
constexpr Stroke tern[] = {
    {{-8, 6}, {8, -5}, 6, 5},         {{8, -5}, {12, -7.5F}, 4.5F, 3.5F}, {{12, -7.5F}, {18, -8}, 1.6F, 0.3F},
    {{-2, 1}, {-9, -14}, 5, 3},       {{-9, -14}, {-27, -21}, 3, 0.2F},   {{3, 0}, {13, 11}, 4, 2.6F},
    {{13, 11}, {16, 27}, 2.6F, 0.2F}, {{-8, 6}, {-24, 11}, 3, 0.2F},      {{-8, 6}, {-19, 18}, 3, 0.2F},
};

float thicknessAt(Point p, const Stroke& stroke) {
    const Point ab = {stroke.to.x - stroke.from.x, stroke.to.y - stroke.from.y};
    const float along = ((p.x - stroke.from.x) * ab.x + (p.y - stroke.from.y) * ab.y) / (ab.x * ab.x + ab.y * ab.y);
    return std::lerp(stroke.thickFrom, stroke.thickTo, std::clamp(along, 0.0F, 1.0F)) / 2;
}

/// Signed distance to the bird's outline, negative inside.
float distanceToTern(Point p) {
    float nearest = 1e9F;
    for (const auto& stroke : tern)
        nearest = std::min(nearest, distanceToSegment(p, stroke.from, stroke.to) - thicknessAt(p, stroke));
    return nearest;
}

float coverageOf(float distance) {
    return std::clamp(0.5F - distance, 0.0F, 1.0F);
}

std::uint32_t grey(int level) {
    return 0xff000000U | static_cast<std::uint32_t>(level) * 0x010101U;
}

}  // namespace

TestCard::TestCard(int width, int height)
    : width_(width),
      height_(height),
      still_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
      pixels_(still_.data()) {
    fill(0, 0, width, height, ground);
    grid();
    const float radius = circleRadius(), scale = radius / 36;
    shape(sea, [=](Point p) { return std::hypot(p.x, p.y) - radius; });
    shape(white, [=](Point p) { return std::abs(std::hypot(p.x, p.y) - radius) - 1; });
    shape(white, [=](Point p) { return distanceToTern({p.x / scale, p.y / scale}) * scale; });

    const int band = cell * 2, margin = cell + 2, inner = width - 2 * margin;
    bars(margin, margin, inner, band);
    staircase(margin, height - margin - band, inner, band);
    stripes(margin, margin + band + cell / 2, band);
    stripes(width - margin - band, height - margin - 2 * band - cell / 2, band);
    frame();
}

void TestCard::draw(std::uint32_t* pixels, float turn) {
    std::copy(still_.begin(), still_.end(), pixels);
    pixels_ = pixels;
    mark(circleRadius(), turn);
}

float TestCard::circleRadius() const {
    return static_cast<float>(std::min(width_, height_)) * 0.42F;
}

void TestCard::fill(int x, int y, int width, int height, std::uint32_t color) {
    for (int row = std::max(0, y); row < std::min(height_, y + height); ++row) {
        const int left = std::max(0, x), right = std::min(width_, x + width);
        std::uint32_t* start = pixels_ + static_cast<std::ptrdiff_t>(row) * width_;
        if (left < right) std::fill(start + left, start + right, color);
    }
}

void TestCard::blend(int x, int y, std::uint32_t color, float coverage) {
    std::uint32_t& pixel = pixels_[static_cast<std::ptrdiff_t>(y) * width_ + x];
    std::uint32_t mixed = 0xff000000;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const auto below = static_cast<float>((pixel >> shift) & 255U),
                   above = static_cast<float>((color >> shift) & 255U);
        mixed |= static_cast<std::uint32_t>(std::lround(std::lerp(below, above, coverage))) << shift;
    }
    pixel = mixed;
}

// From the centre outwards, so that it is the same on all sides.
void TestCard::grid() {
    for (int x = width_ / 2 % cell; x < width_; x += cell) fill(x, 0, 1, height_, lines);
    for (int y = height_ / 2 % cell; y < height_; y += cell) fill(0, y, width_, 1, lines);
}

void TestCard::frame() {
    fill(0, 0, width_, 1, white);
    fill(0, height_ - 1, width_, 1, white);
    fill(0, 0, 1, height_, white);
    fill(width_ - 1, 0, 1, height_, white);
}

void TestCard::bars(int x, int y, int width, int height) {
    constexpr std::uint32_t colors[] = {0xffffffff, 0xffffff00, 0xff00ffff, 0xff00ff00,
                                        0xffff00ff, 0xffff0000, 0xff0000ff, 0xff000000};
    constexpr int count = std::size(colors);
    for (int i = 0; i < count; ++i)
        fill(x + width * i / count, y, width * (i + 1) / count - width * i / count, height, colors[i]);
}

void TestCard::staircase(int x, int y, int width, int height) {
    constexpr int steps = 16;
    for (int i = 0; i < steps; ++i)
        fill(x + width * i / steps, y, width * (i + 1) / steps - width * i / steps, height,
             grey(255 * i / (steps - 1)));
}

void TestCard::stripes(int x, int y, int size) {
    const int half = size / 2;
    fill(x, y, size, size, 0xff000000);
    for (int i = 0; i < half; i += 2) {
        fill(x + i, y, 1, half, white);
        fill(x + half, y + i, half, 1, white);
    }
    for (int i = 0; i < half; ++i)
        for (int j = 0; j < half; ++j) {
            if ((i + j) % 2 == 0) fill(x + i, y + half + j, 1, 1, white);
            if (i % 4 < 2) fill(x + half + i, y + half + j, 1, 1, white);
        }
}

template <typename Distance>
void TestCard::shape(std::uint32_t color, Distance distance) {
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) blend(x, y, color, coverageOf(distance(fromCentre(x, y))));
}

TestCard::Point TestCard::fromCentre(int x, int y) const {
    return {static_cast<float>(x) + 0.5F - static_cast<float>(width_) / 2,
            static_cast<float>(y) + 0.5F - static_cast<float>(height_) / 2};
}

void TestCard::mark(float radius, float turn) {
    constexpr int size = 7;
    const float angle = turn * 2 * std::numbers::pi_v<float>;
    const Point centre = {radius * std::sin(angle), -radius * std::cos(angle)};
    const int left = width_ / 2 + static_cast<int>(centre.x), top = height_ / 2 + static_cast<int>(centre.y);
    for (int y = top - size - 1; y <= top + size; ++y)
        for (int x = left - size - 1; x <= left + size; ++x) {
            const Point p = fromCentre(x, y);
            blend(x, y, signal, coverageOf(std::hypot(p.x - centre.x, p.y - centre.y) - size + 1));
        }
}
