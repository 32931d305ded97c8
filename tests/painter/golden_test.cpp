// A few whole pictures, against changes that the small tests would not see. Each is drawn at all four rotations and
// read back in logical order, so one golden holds for all of them.
#include "tests/support/goldenimage.h"

#include <cmath>

#include "embedded-gui-engine/ringsector.h"
#include "tests/painter/target.h"

using Engine::Image;

namespace {

constexpr unsigned width = 96;
constexpr unsigned height = 64;

/// A soft disc, as icons and glyphs are.
std::vector<unsigned char> disc(unsigned size) {
    std::vector<unsigned char> samples;
    const double middle = (size - 1) / 2.0;
    for (unsigned y = 0; y < size; ++y)
        for (unsigned x = 0; x < size; ++x) {
            const double inside = middle - std::hypot(x - middle, y - middle);
            samples.push_back(static_cast<unsigned char>(std::min(255.0, std::max(0.0, inside * 128))));
        }
    return samples;
}

/// All hues, from clear at the left to opaque at the right.
std::vector<unsigned> gradient(unsigned columns, unsigned rows) {
    std::vector<unsigned> pixels;
    for (unsigned y = 0; y < rows; ++y)
        for (unsigned x = 0; x < columns; ++x)
            pixels.push_back((x * 255 / (columns - 1)) << 24 | (y * 255 / (rows - 1)) << 16 | (255 - x * 4) << 8 |
                             y * 6);
    return pixels;
}

void drawShapes(Engine::Painter& painter) {
    const auto soft = disc(15);
    const auto colors = gradient(30, 20);
    const Image icon = imageOf(soft, 15, Image::Mask8);
    const Image picture = imageOf(colors, 30, Image::Argb8888);

    painter.setBackground(0xff203040);
    painter.clear();
    painter.setBackground(0x80ffc000);
    painter.fill({4, 4, 40, 24});
    painter.fill({30, 14, 40, 24});
    painter.setForeground(0xffffffff);
    painter.drawImage(icon, 0, 0, {6, 6, 15, 15});
    painter.setBackground(0xffc00020);
    painter.drawMaskHalo(icon, 0, 0, {24, 6, 15, 15}, 2);
    painter.drawImage(icon, 0, 0, {24, 6, 15, 15});
    painter.drawImage(picture, 0, 0, {60, 2, 30, 20});
    painter.setForeground(0xff40e0a0);
    painter.drawImageNine(icon, {3, 32, 40, 28});
    painter.drawImageScaled(picture, {0, 0, 30, 20}, {48, 32, 45, 29});
}

/// The picture in logical order, as 32-bit colours.
template <typename T>
Support::Picture32 logicalPicture(const Target<T>& target) {
    const auto rotation = target.painter.rotationIndex();
    const auto columns = static_cast<unsigned>(target.painter.logicalWidth());
    const auto rows = static_cast<unsigned>(target.painter.logicalHeight());
    Support::Picture32 picture{columns, rows, {}};
    for (unsigned y = 0; y < rows; ++y)
        for (unsigned x = 0; x < columns; ++x) {
            const std::pair<unsigned, unsigned> places[] = {
                {x, y}, {y, columns - 1 - x}, {columns - 1 - x, rows - 1 - y}, {rows - 1 - y, x}};
            const T pixel = target.at(places[rotation].first, places[rotation].second);
            if constexpr (sizeof(T) == 4)
                picture.pixels.push_back(pixel);
            else
                picture.pixels.push_back((pixel & 0x8000U ? 0xff000000U : 0x80000000U) | (pixel >> 10 & 31U) << 19 |
                                         (pixel >> 5 & 31U) << 11 | (pixel & 31U) << 3);
        }
    return picture;
}

template <typename T>
Support::Picture32 shapes(unsigned rotation) {
    const bool sideways = rotation % 2 != 0;
    Target<T> target(sideways ? height : width, sideways ? width : height, rotation);
    drawShapes(target.painter);
    return logicalPicture(target);
}

}  // namespace

TEST(Golden, ShapesAtEveryRotation) {
    for (unsigned rotation = 0; rotation < 4; ++rotation)
        EXPECT_TRUE(matchesGolden(shapes<unsigned int>(rotation), "tests/painter/golden/shapes.png"))
            << "rotation " << rotation;
}

TEST(Golden, ShapesInSixteenBits) {
    EXPECT_TRUE(matchesGolden(shapes<unsigned short>(0), "tests/painter/golden/shapes16.png"));
}

TEST(Golden, RingSectors) {
    Target<unsigned int> target(80, 40, 0, 0xff203040);
    Engine::RingSector ring(18, 11);
    Engine::RingSector pie(16, 0);
    target.painter.setForeground(0xffffc000);
    target.painter.drawRingSector(ring, 20, 20, -1350, 1100);
    target.painter.drawRingSector(pie, 60, 20, 200, 3300);
    EXPECT_TRUE(matchesGolden(logicalPicture(target), "tests/painter/golden/rings.png"));
}
