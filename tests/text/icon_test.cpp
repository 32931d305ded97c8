#include "embedded-gui-engine/icon.h"

#include <gtest/gtest.h>

#include <array>

#include "embedded-gui-engine/fancyborder.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/lineborder.h"
#include "screen.h"

namespace {

using Engine::Icon;
using Engine::Image;
using Engine::WidgetParams;
using TextTest::Screen;

constexpr std::array<std::uint8_t, 4> diagonal{255, 0, 0, 255};
constexpr Image diagonalImage{4, 2, 2, Image::Mask8, diagonal.data()};

// Corners, edges and centre in their own places, so that a mixed up slice shows.
constexpr std::array<std::uint8_t, 9> ring{255, 255, 255, 255, 0, 255, 255, 255, 255};
constexpr Image ringImage{9, 3, 3, Image::Mask8, ring.data()};

std::string drawn(Icon& icon, std::uint32_t width = 8, std::uint32_t height = 5) {
    Screen screen(width, height);
    screen.draw(icon);
    return screen.picture();
}

TEST(Icon, LiesInTheContentByAlignmentAndScroll) {
    WidgetParams params{.width = 6, .height = 4, .scrollX = 1, .padding = 1};
    params.horizontalAlign = Engine::Painter::Align::Centre;
    params.verticalAlign = Engine::Painter::Align::End;
    Icon icon(params, &diagonalImage);
    EXPECT_EQ(drawn(icon), "\n......  \n...#..  \n....#.  \n......  \n        ");
    Icon empty(params);
    EXPECT_EQ(drawn(empty), "\n        \n        \n        \n        \n        ") << "not even its background";
}

TEST(Icon, TilesAreACross) {
    WidgetParams params{.width = 7, .height = 5};
    params.horizontalAlign = Engine::Painter::Align::Centre;
    params.verticalAlign = Engine::Painter::Align::Centre;
    Icon icon(params, &diagonalImage, Icon::Tiling::Cross);
    EXPECT_EQ(drawn(icon, 8, 5), "\n...#... \n#.#.#.# \n.#.#.#.#\n..#.... \n...#... ");
}

TEST(Icon, AnImageOfNoSizeIsNotTiledForever) {
    const Image nothing{0, 0, 0, Image::Mask8, diagonal.data()};
    WidgetParams params{.width = 7, .height = 5};
    Icon icon(params, &nothing, Icon::Tiling::Cross);
    drawn(icon);
}

TEST(Icon, NineSlicesStretchOverTheWholeWidget) {
    Icon icon({.x = 1, .width = 6, .height = 4, .padding = 2}, &ringImage, Icon::Tiling::Off, Icon::Slicing::Nine);
    EXPECT_EQ(drawn(icon), "\n ###### \n #....# \n #....# \n ###### \n        ");
}

TEST(Icon, HaloLiesUnderThePicture) {
    WidgetParams params{.width = 8, .height = 5, .haloColor = TextTest::red, .haloRadius = 1};
    params.horizontalAlign = Engine::Painter::Align::Centre;
    params.verticalAlign = Engine::Painter::Align::Centre;
    static constexpr std::uint8_t dot = 255;
    const Image dotImage{1, 1, 1, Image::Mask8, &dot};
    Icon icon(params, &dotImage);
    EXPECT_EQ(drawn(icon), "\n........\n..rrr...\n..r#r...\n..rrr...\n........");
}

TEST(Border, LinesFrameTheFilledInside) {
    Engine::LineBorder border(TextTest::red, 0, 1);
    WidgetParams params{.x = 1, .width = 6, .height = 4};
    params.border = &border;
    Icon icon(params, &diagonalImage);
    EXPECT_EQ(drawn(icon), "\n rrrrrr \n r#...r \n r.#..r \n rrrrrr \n        ");
}

TEST(Border, FancyOnesDrawThePictureInTheirColourAndRestoreTheStyle) {
    Engine::FancyBorder border(TextTest::blue, &ringImage);
    WidgetParams params{.width = 6, .height = 5};
    params.border = &border;
    Icon icon(params, &diagonalImage);
    EXPECT_EQ(drawn(icon), "\nbbbbbb  \nb#   b  \nb #  b  \nb    b  \nbbbbbb  ");
}

int errors = 0;

TEST(Border, UnevenPicturesAreLoggedOnce) {
    errors = 0;
    Engine::hooks().log = [](int level, const char*, int, const char*, va_list) { errors += level == 0 ? 1 : 0; };
    const Image uneven{31 * 30, 31, 30, Image::Mask8, nullptr};
    const Engine::FancyBorder built(TextTest::blue, &uneven);
    EXPECT_EQ(errors, 1);
    EXPECT_EQ(built.thickness(), 10);

    static const std::array<std::uint8_t, 16> samples{};
    static const Image constant{16, 4, 4, Image::Mask8, samples.data()};
    static constinit Engine::FancyBorder constantBorder(TextTest::blue, &constant);
    EXPECT_EQ(errors, 1);
    Screen screen(8, 5);
    constantBorder.draw(screen.painter(), {0, 0, 8, 5});
    constantBorder.draw(screen.painter(), {0, 0, 8, 5});
    EXPECT_EQ(errors, 2);
    EXPECT_EQ(Engine::FancyBorder(TextTest::blue, nullptr).thickness(), 0);
    Engine::hooks() = {};
}

TEST(Border, AChangeOfColourMarksTheOwner) {
    struct Owner final : Engine::Widget {
        Owner() : Widget(WidgetParams{}) {}
        void draw(Engine::Painter&, Engine::Rect) override {}
        void invalidateAll(bool) override { ++marks; }
        int marks = 0;
    };
    Engine::LineBorder border(TextTest::red, 0, 1);
    border.setColor(TextTest::blue);
    Owner owner;
    border.setOwner(&owner);
    border.setColor(TextTest::blue);
    EXPECT_EQ(owner.marks, 0);
    border.setColor(TextTest::red);
    EXPECT_EQ(owner.marks, 1);
}

}  // namespace
