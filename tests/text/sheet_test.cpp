#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/utf8.h"
#include "model/assets.h"
#include "tests/support/goldenimage.h"

namespace {

using Engine::Painter;
using Engine::Rect;
using Align = Engine::Painter::Align;

constexpr std::uint32_t side = 240;
constexpr const char* english = "Focus distance 12:34";
constexpr const char* chinese = "\xE5\xAF\xB9\xE7\x84\xA6\xE8\xB7\x9D\xE7\xA6\xBB 12:34";
constexpr const char* spanish =
    "Di\xC3\xA1logo de se\xC3\xB1"
    "al 12:34";
constexpr const char* german =
    "Sch\xC3\xA4rfe \xC3\xBC"
    "ber 11:11";

/// Four languages, three sizes, wrap, the three alignments, both ellipses, a halo and proportional digits.
void drawSheet(Painter& painter) {
    painter.setColors(0xFFFFFFFF, 0xFF202020);
    painter.setBackground(0xFF202020);
    painter.fill({0, 0, side, side});
    painter.setForeground(0xFFFFFFFF);
    const auto draw = [&](int font, const char* text, Rect rect) {
        painter.setFont(&Assets::fonts[font]);
        painter.drawText(text, rect, 0, 0, -1);
    };
    draw(3, english, {4, 0, 232, 29});
    painter.setAlign(Align::Centre, Align::Centre);
    draw(5, chinese, {4, 30, 232, 29});
    painter.setAlign(Align::End, Align::End);
    draw(7, spanish, {4, 60, 232, 25});
    painter.setForeground(0xFFFFC040);
    painter.setTabularDigits(false);
    draw(8, german, {4, 86, 232, 16});
    painter.setTabularDigits(true);
    painter.setAlign(Align::Start, Align::Start);
    painter.setWrap(true);
    draw(8, "Sch\xC3\xA4rfe, Blende und Zoom\nFoco, iris y zoom", {4, 106, 90, 64});
    draw(7, "\xE5\xAF\xB9\xE7\x84\xA6\xE8\xB7\x9D\xE7\xA6\xBB\xE5\xAF\xB9\xE7\x84\xA6", {124, 106, 70, 64});
    painter.setWrap(false);
    painter.setEllipsis(1);
    draw(7, "Calibration of motors", {4, 176, 100, 21});
    painter.setEllipsis(2);
    draw(7, "Calibration of motors", {124, 176, 100, 21});
    painter.setEllipsis(0);
    painter.setForeground(0xFF000000);
    painter.setBackground(0xFF40C0FF);
    painter.setHaloRadius(1);
    draw(5, "Iris 2.8", {4, 204, 100, 27});
    painter.setHaloRadius(0);
    draw(5, "Iris 2.8", {4, 204, 100, 27});
    draw(5, "cut at the edge of the screen", {124, 220, 232, 27});
}

Support::Picture32 sheet(std::uint32_t rotation) {
    Support::Picture32 picture{side, side, std::vector<std::uint32_t>(std::size_t{side} * side)};
    Engine::Framebuffer<unsigned int> painter(side, side, 8, picture.pixels.data(), rotation);
    drawSheet(painter);
    return picture;
}

TEST(TextSheet, LooksAsItDidInAllRotations) {
    for (std::uint32_t rotation = 0; rotation < 4; ++rotation) {
        const std::string name = "tests/text/golden/sheet-" + std::to_string(rotation * 90) + ".png";
        EXPECT_TRUE(Support::matchesGolden(sheet(rotation), name));
    }
}

/// A turn moves pixels and changes none.
TEST(TextSheet, RotationsAreTurnsOfEachOther) {
    const auto upright = sheet(0).pixels;
    const auto quarter = sheet(1).pixels;
    const auto half = sheet(2).pixels;
    const auto threeQuarters = sheet(3).pixels;
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = 0; x < side; ++x) {
            const std::uint32_t pixel = upright[y * side + x];
            ASSERT_EQ(quarter[y + side * (side - 1 - x)], pixel) << x << ' ' << y;
            ASSERT_EQ(half[side * (side - 1 - y) + side - 1 - x], pixel) << x << ' ' << y;
            ASSERT_EQ(threeQuarters[side - 1 - y + side * x], pixel) << x << ' ' << y;
        }
    }
}

TEST(TextSheet, EveryFontHasTheCharactersOfTheSheet) {
    for (const Engine::PreGeneratedFont& font : Assets::fonts) {
        for (const char* text : {english, spanish, german}) {
            while (const std::uint32_t code = Engine::decodeUtf8(text)) EXPECT_NE(font.glyphIndex(code), 0u) << code;
        }
    }
}

/// The ASCII characters of the real fonts stand where one probe finds them, and the others are found by the search.
TEST(TextSheet, RealFontsFindAllTheirGlyphs) {
    for (const Engine::PreGeneratedFont& font : Assets::fonts) {
        const Engine::FontRecord& record = font.record();
        for (std::uint32_t i = 0; i < record.glyphCount; ++i) ASSERT_EQ(font.glyphIndex(record.codeTable[i]), i);
        for (std::uint32_t code = 33; code < 127; ++code) EXPECT_EQ(font.glyphIndex(code), code - 30);
    }
}

}  // namespace
