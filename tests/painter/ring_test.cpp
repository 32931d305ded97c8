#include <cmath>

#include "embedded-gui-engine/ringsector.h"
#include "tests/painter/target.h"

using Engine::RingSector;

namespace {

constexpr int size = 41;
constexpr int centre = 20;

/// Coverage of each pixel: white drawn on black.
std::vector<int> coverageOf(int outer, int inner, int from, int to, unsigned rotation = 0) {
    Target<unsigned int> target(size, size, rotation);
    RingSector ring(outer, inner);
    target.painter.setForeground(0xffffffff);
    target.painter.drawRingSector(ring, centre, centre, from, to);
    std::vector<int> coverage;
    for (std::size_t i = 0; i < target.pixels.size(); ++i) coverage.push_back(target.pixels.data()[i] & 255);
    return coverage;
}

int at(const std::vector<int>& coverage, int dx, int dy) {
    return coverage[static_cast<std::size_t>((centre + dy) * size + centre + dx)];
}

double sum(const std::vector<int>& coverage) {
    double total = 0;
    for (const int value : coverage) total += value / 255.0;
    return total;
}

}  // namespace

TEST(Ring, TablesReachTheDiagonalAndFollowItInside) {
    RingSector ring(5, 2);
    ring.prepare();
    EXPECT_EQ(ring.outerTable(), (std::vector<std::int32_t>{1280, 1254, 1173, 1024}));
    EXPECT_EQ(ring.innerTable(), (std::vector<std::int32_t>{512, 256, 512, 768}))
        << "sqrt(3) still reaches 1, but not 2: from the second scanline on the diagonal";
    ring.outerRadius = 1;
    ring.prepare();
    EXPECT_EQ(ring.outerTable(), (std::vector<std::int32_t>{256}));
}

TEST(Ring, BeginsAtTheRightAndTurnsClockwise) {
    const auto quarter = coverageOf(15, 5, 0, 900);
    EXPECT_EQ(at(quarter, 7, 7), 255);
    EXPECT_EQ(at(quarter, 7, -7), 0);
    EXPECT_EQ(at(quarter, -7, 7), 0);
    EXPECT_EQ(at(quarter, 2, 2), 0) << "inside the ring";
    EXPECT_NEAR(at(quarter, 10, 0), 128, 1) << "the edges run through the middle of their pixels";
    EXPECT_NEAR(at(quarter, 0, 10), 128, 1);
    EXPECT_EQ(quarter, coverageOf(15, 5, 900, 0)) << "the smaller angle begins";
    EXPECT_EQ(quarter, coverageOf(15, 5, -3600, -2700));
    EXPECT_EQ(quarter, coverageOf(15, 5, 0, 900, 1)) << "rotation is not honoured";
}

TEST(Ring, IsSymmetricalAndAsLargeAsItsCircles) {
    const auto ring = coverageOf(16, 9, 0, 3600);
    for (int y = -18; y <= 18; ++y)
        for (int x = -18; x <= 18; ++x) {
            EXPECT_EQ(at(ring, x, y), at(ring, -x, y));
            EXPECT_EQ(at(ring, x, y), at(ring, y, x));
        }
    EXPECT_NEAR(sum(ring), std::acos(-1.0) * (15.6 * 15.6 - 8.6 * 8.6), 25);
    EXPECT_EQ(ring, coverageOf(16, 9, -100000, 2000000000)) << "more than a turn is a turn";
}

TEST(Ring, SectorsOfAnyAngleHaveTheirShareAndMeetWithoutGapOrOverlap) {
    const double whole = sum(coverageOf(18, 8, 0, 3600));
    for (int angle = 0; angle < 3600; angle += 97) {
        const auto sector = coverageOf(18, 8, angle, angle + 700);
        const auto rest = coverageOf(18, 8, angle + 700, angle + 3600);
        EXPECT_NEAR(sum(sector), whole * 700 / 3600, whole / 100) << "from " << angle;
        EXPECT_NEAR(sum(sector) + sum(rest), whole, whole / 200) << "from " << angle;
    }
}

TEST(Ring, MixesRoundingUpAndStoresTheForegroundsAlpha) {
    Target<unsigned int> target(size, size, 0, 0x00646464);
    RingSector ring(10, 0);
    target.painter.setForeground(0x42ffffff);
    target.painter.drawRingSector(ring, centre, centre, 0, 900);
    EXPECT_EQ(target.at(centre + 4, centre + 4), 0x42ffffffU);
    // Scanline 3 reaches sqrt(91) = 9.539: 138 / 256 of its last pixel.
    const unsigned mixed = (138 * 255 + 117 * 100 + 255) >> 8;
    EXPECT_EQ(target.at(centre + 9, centre + 3), 0x42000000U | mixed * 0x010101U);

    Target<unsigned short> half(size, size);
    half.painter.setForeground(0xffffffff);
    half.painter.drawRingSector(ring, centre, centre, 0, 900);
    EXPECT_EQ(half.at(centre + 4, centre + 4), 0xffff);

    const Engine::Color palette[] = {0, 7};
    Target<unsigned char> index(size, size, 0, 0, 4);
    index.painter.setPalette(palette, 2);
    index.painter.setColors(7, 0);
    index.painter.drawRingSector(ring, centre, centre, 0, 900);
    EXPECT_EQ(index.at(centre + 4, centre + 4), 1 + 15);
}

TEST(Ring, KeepsToTheClip) {
    Target<unsigned int> target(size, size);
    target.letters[0xffffffff] = '#';
    target.painter.setForeground(0xffffffff);
    target.painter.setClip({centre - 1, centre - 2, 3, 2});
    RingSector ring(15, 0);
    target.painter.drawRingSector(ring, centre, centre, 0, 3600);
    const auto rows = target.picture();
    EXPECT_EQ(rows[centre - 3], std::string(size, '.'));
    EXPECT_EQ(rows[centre - 2], std::string(centre - 1, '.') + "###" + std::string(size - centre - 2, '.'));
    EXPECT_EQ(rows[centre], std::string(size, '.'));
}
