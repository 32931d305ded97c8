// What no caller should ask for. The target's guards find a write outside, the sanitizers everything undefined, and the
// time limit an endless loop.
#include <climits>

#include "embedded-gui-engine/ringsector.h"
#include "tests/painter/target.h"

using Engine::Image;
using Engine::Rect;

namespace {

constexpr std::int16_t least = INT16_MIN;
constexpr std::int16_t most = INT16_MAX;

const Rect rects[] = {
    {0, 0, 0, 0},
    {least, least, most, most},
    {least, least, least, least},
    {most, most, most, most},
    {most, 0, most, 5},
    {0, most, 5, most},
    {-1, -1, most, most},
    {3, 2, -4, -4},
    {0, 0, most, most},
    {30000, 0, 30000, 4},
    {least, 0, most, 4},
    {-20, -20, 10, 10},
    {23, 15, 1, 1},
    {24, 16, 1, 1},
    {0, 0, 1, most},
};
const int positions[] = {0, 1, -1, 7, 8, 100, INT_MAX, INT_MIN, INT_MIN + 1};

template <typename T>
class BadInput : public testing::Test {
  public:
    std::vector<std::uint32_t> words = std::vector<std::uint32_t>(64, 0x80ff8001U);

    std::vector<Image> images() const {
        std::vector<Image> all;
        for (const Image::Format format : {Image::Indexed8, Image::Argb8888, Image::Argb1555, Image::Mask8})
            for (const auto& [width, height] :
                 {std::pair(8U, 8U), std::pair(0U, 8U), std::pair(8U, 0U), std::pair(1U, 64U)})
                all.push_back({0, width, height, format, words.data()});
        all.push_back({0, 8, 8, 77, words.data()});
        all.push_back({0, 8, 8, Image::Argb8888, nullptr});
        all.push_back({0, UINT_MAX, UINT_MAX, Image::Mask8, words.data()});
        return all;
    }
};

using Depths = testing::Types<unsigned char, unsigned short, unsigned int>;
TYPED_TEST_SUITE(BadInput, Depths);

}  // namespace

TYPED_TEST(BadInput, OfRectanglesAndPositionsStaysInside) {
    const auto images = this->images();
    for (unsigned rotation = 0; rotation < 4; ++rotation)
        for (const Rect& clip : rects) {
            Target<TypeParam> target(24, 16, rotation);
            auto& painter = target.painter;
            painter.setColors(0xffffffff, 0x80ffffff);
            painter.setClip(clip);
            for (const Rect& rect : rects) {
                painter.fill(rect);
                painter.erase(rect);
                for (const Image& image : images) {
                    painter.drawImageNine(image, rect);
                    painter.drawImageScaled(image, rect, {-3, -3, 30, 30});
                    painter.drawImageScaled(image, {0, 0, 8, 8}, rect);
                    for (const int position : positions) {
                        painter.drawImage(image, position, 0, rect);
                        painter.copyImage(image, 0, position, rect);
                        painter.drawMaskHalo(image, position, position, rect, position % 7);
                    }
                }
            }
        }
}

TYPED_TEST(BadInput, OfRingsStaysInside) {
    Target<TypeParam> target(24, 16, 1);
    target.painter.setColors(0xffffffff, 0);
    for (const int radius : {0, -5, 12, 100, 65535, 65536, INT_MAX, INT_MIN}) {
        Engine::RingSector ring(radius, 3);
        Engine::RingSector hole(10, radius);
        for (const int place : positions)
            for (const int angle : {0, 450, -1, 3600, INT_MAX, INT_MIN}) {
                target.painter.drawRingSector(ring, place, 8, angle, 100);
                target.painter.drawRingSector(hole, 12, place, angle, INT_MAX);
            }
    }
}

TYPED_TEST(BadInput, ATurnWithoutAResetOfTheClipStaysInside) {
    Target<TypeParam> target(24, 16);
    target.painter.setColors(0, 0xffffffff);
    for (const int degrees : {90, 180, 270, 0, 270, INT_MIN, INT_MAX}) {
        target.painter.setRotationDegrees(degrees);
        target.painter.fillRect({-5, -5, 100, 100}, false);
    }
}

TYPED_TEST(BadInput, OfPalettesShowsNothing) {
    const std::vector<unsigned char> indices = {0, 1, 255};
    const Engine::Color palette[] = {0xff00ff00};
    Target<TypeParam> target(3, 1, 0, 9);
    const Image image = imageOf(indices, 3, Image::Indexed8);
    for (const int count : {0, -1, INT_MIN}) {
        target.painter.setPalette(palette, count);
        target.painter.setColors(1, 2);
        target.painter.drawImage(image, 0, 0, {0, 0, 3, 1});
    }
    target.painter.setPalette(nullptr, 5);
    target.painter.drawImageScaled(image, {0, 0, 3, 1}, {0, 0, 3, 1});
    EXPECT_EQ(target.picture(), (Picture{"..."}));
    target.painter.setPalette(palette, 1);
    target.painter.drawImage(image, 1, 0, {1, 0, 2, 1});
    EXPECT_EQ(target.picture(), (Picture{"..."})) << "indices without an entry";
}

TYPED_TEST(BadInput, EmptySurfacesAndOddDepthsOfSamplesDrawNothingWrong) {
    const std::vector<unsigned char> mask(64, 255);
    for (const unsigned sampleBits : {0U, 9U, 31U, 32U, 64U, UINT_MAX}) {
        Target<TypeParam> target(4, 4, 0, 0, sampleBits);
        target.painter.setColors(0xffffffff, 0xffffffff);
        target.painter.drawImage(imageOf(mask, 8, Image::Mask8), 0, 0, {0, 0, 8, 8});
        Engine::RingSector ring(4, 0);
        target.painter.drawRingSector(ring, 2, 2, 0, 3600);
    }
    for (const auto& [width, height] : {std::pair(0U, 4U), std::pair(4U, 0U), std::pair(0U, 0U)}) {
        Target<TypeParam> target(width, height);
        target.painter.clear();
        target.painter.fill({0, 0, 4, 4});
        target.painter.drawImage(imageOf(mask, 8, Image::Mask8), 0, 0, {0, 0, 8, 8});
    }
}
