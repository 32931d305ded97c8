// The finished records, as the engine sees them.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "model/assets.h"
#include "model/images.h"

namespace {

struct Fixed {
    int lineHeight, digitWidth, baseline;
};

constexpr Fixed fixed[] = {{74, 28, 7}, {53, 20, 5}, {40, 15, 4}, {29, 11, -2}, {27, 10, 1},
                           {27, 10, 1}, {29, 9, 1},  {21, 8, 0},  {16, 6, 0}};

const std::uint8_t* row(const Engine::FontRecord& font, int y) {
    return static_cast<const std::uint8_t*>(font.atlas.pixels) + static_cast<std::size_t>(y) * font.atlas.width;
}

struct Box {
    int x, y, width, height;
};

Box boxOf(const Engine::FontRecord& font, std::uint32_t glyph) {
    return {static_cast<int>(font.xTable[glyph]), font.yTable[glyph], font.widthTable[glyph], font.heightTable[glyph]};
}

bool hasInk(const Engine::FontRecord& font, const Box& box) {
    for (int y = box.y; y < box.y + box.height; ++y)
        if (std::any_of(row(font, y) + box.x, row(font, y) + box.x + box.width, [](auto value) { return value != 0; }))
            return true;
    return false;
}

std::uint32_t find(const Engine::FontRecord& font, std::uint32_t code) {
    return static_cast<std::uint32_t>(std::lower_bound(font.codeTable, font.codeTable + font.glyphCount, code) -
                                      font.codeTable);
}

class Fonts : public testing::TestWithParam<int> {
  protected:
    const Engine::FontRecord& font() const { return Assets::records.fonts[GetParam()]; }
    int inkTop(std::uint32_t code) const {
        return font().baseline + font().yTable[find(font(), code)] % font().lineHeight;
    }
};

}  // namespace

TEST_P(Fonts, HaveTheFixedFigures) {
    EXPECT_EQ(font().lineHeight, fixed[GetParam()].lineHeight);
    EXPECT_EQ(font().digitWidth, fixed[GetParam()].digitWidth);
    EXPECT_EQ(font().baseline, fixed[GetParam()].baseline);
    EXPECT_EQ(font().id, 0);
    EXPECT_EQ(font().codeLimit, 0xFF20u);
    EXPECT_EQ(font().atlas.format, Engine::Image::Mask8);
    EXPECT_EQ(font().atlas.dataSize, font().atlas.width * font().atlas.height);
    EXPECT_LE(font().atlas.width, 2048u);
}

TEST_P(Fonts, CodesRiseStrictlyFromTheReplacement) {
    ASSERT_GT(font().glyphCount, 600u);
    EXPECT_EQ(font().codeTable[0], 0);
    EXPECT_EQ(font().codeTable[1], 10);
    EXPECT_EQ(font().codeTable[2], 32);
    for (std::uint32_t i = 1; i < font().glyphCount; ++i) ASSERT_LT(font().codeTable[i - 1], font().codeTable[i]);
    EXPECT_LT(font().codeTable[font().glyphCount - 1], font().codeLimit);
    EXPECT_GT(boxOf(font(), 0).width * boxOf(font(), 0).height, 0);
    for (const std::uint32_t empty : {1u, 2u}) EXPECT_EQ(boxOf(font(), empty).width * boxOf(font(), empty).height, 0);
    EXPECT_GT(font().advanceTable[2], 0);
}

TEST_P(Fonts, GlyphsAreCutToTheirInkAndStayInTheirBand) {
    for (std::uint32_t i = 0; i < font().glyphCount; ++i) {
        const Box box = boxOf(font(), i);
        if (box.width == 0) continue;
        SCOPED_TRACE("code " + std::to_string(font().codeTable[i]));
        ASSERT_LE(box.x + box.width, static_cast<int>(font().atlas.width));
        ASSERT_LE(box.y + box.height, static_cast<int>(font().atlas.height));
        ASSERT_LE(box.y % font().lineHeight + box.height, font().lineHeight);
        ASSERT_TRUE(hasInk(font(), {box.x, box.y, box.width, 1}));
        ASSERT_TRUE(hasInk(font(), {box.x, box.y + box.height - 1, box.width, 1}));
        ASSERT_TRUE(hasInk(font(), {box.x, box.y, 1, box.height}));
        ASSERT_TRUE(hasInk(font(), {box.x + box.width - 1, box.y, 1, box.height}));
    }
}

// Every pixel of ink in the atlas belongs to exactly one glyph: no glyph overlaps another, nothing is left over.
TEST_P(Fonts, GlyphsShareNoPixel) {
    std::vector<std::uint8_t> owners(font().atlas.dataSize);
    for (std::uint32_t i = 0; i < font().glyphCount; ++i) {
        const Box box = boxOf(font(), i);
        for (int y = box.y; y < box.y + box.height; ++y)
            for (int x = box.x; x < box.x + box.width; ++x)
                ASSERT_EQ(owners[static_cast<std::size_t>(y) * font().atlas.width + static_cast<std::size_t>(x)]++, 0);
    }
    const auto* pixels = static_cast<const std::uint8_t*>(font().atlas.pixels);
    for (std::size_t i = 0; i < owners.size(); ++i) ASSERT_TRUE(owners[i] || !pixels[i]);
}

TEST_P(Fonts, CapitalsAndIdeographsHangOnTheMiddleOfTheLine) {
    for (const std::uint32_t code : {0x48u, 0x4Eu, 0x45u, 0x4E2Du}) {
        const std::uint32_t glyph = find(font(), code);
        ASSERT_EQ(font().codeTable[glyph], code);
        const int above = inkTop(code), below = font().lineHeight - inkTop(code) - font().heightTable[glyph];
        EXPECT_NEAR(above, below, 0.06 * font().lineHeight + 2.5) << "code " << code;
    }
}

// The fixed band of font 3 leaves least room below: descenders must not be cut there.
TEST_P(Fonts, DescendersAreWhole) {
    const int descender = inkTop('p') + font().heightTable[find(font(), 'p')];
    const int base = inkTop('x') + font().heightTable[find(font(), 'x')];
    EXPECT_GE(descender - base, font().heightTable[find(font(), 'H')] / 4);
}

TEST_P(Fonts, FiguresFitTheirCells) {
    for (std::uint32_t code = '0'; code <= '9'; ++code)
        EXPECT_LE(font().widthTable[find(font(), code)], font().digitWidth);
}

TEST_P(Fonts, HoldTheFullWidthMarksAndTheSigns) {
    for (const std::uint32_t code :
         {0xFF01u, 0xFF08u, 0xFF09u, 0xFF0Cu, 0xFF1Au, 0xFF1Fu, 0xB0u, 0x2605u, 0x2713u, 0x232Bu})
        EXPECT_EQ(font().codeTable[find(font(), code)], code);
}

TEST_P(Fonts, ObjectsStandOverTheirRecords) {
    Engine::PreGeneratedFont& object = Assets::fonts[GetParam()];
    EXPECT_EQ(&object.record(), &font());
    EXPECT_EQ(object.selectGlyph('A', false), find(font(), 'A'));
    EXPECT_EQ(object.selectGlyph(0x9F7F + 1, false), 0u);
}

INSTANTIATE_TEST_SUITE_P(Nine, Fonts, testing::Range(0, Assets::fontCount));

TEST(Images, HaveTheirSizesFormatsAndCounts) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> counts;
    int masks = 0;
    for (const Engine::Image& image : Assets::records.images) {
        ++counts[{image.width, image.height}];
        masks += image.format == Engine::Image::Mask8;
        EXPECT_EQ(image.dataSize, image.width * image.height * (image.format == Engine::Image::Mask8 ? 1 : 4));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.pixels) % 4, 0u);
    }
    const std::map<std::pair<std::uint32_t, std::uint32_t>, int> expected = {
        {{120, 20}, 1}, {{62, 20}, 2}, {{45, 16}, 2}, {{30, 16}, 2},  {{30, 30}, 4}, {{29, 29}, 2}, {{22, 22}, 3},
        {{17, 15}, 4},  {{15, 17}, 4}, {{18, 21}, 2}, {{17, 9}, 5},   {{16, 16}, 2}, {{15, 16}, 1}, {{15, 11}, 2},
        {{25, 15}, 1},  {{22, 11}, 1}, {{24, 12}, 2}, {{13, 11}, 8},  {{13, 13}, 1}, {{12, 13}, 4}, {{12, 18}, 1},
        {{14, 15}, 2},  {{11, 11}, 1}, {{11, 12}, 1}, {{12, 4}, 1},   {{9, 9}, 2},   {{9, 13}, 2},  {{8, 8}, 1},
        {{8, 15}, 2},   {{6, 10}, 1},  {{6, 12}, 1},  {{200, 20}, 1}, {{24, 27}, 1}, {{20, 24}, 1}};
    EXPECT_EQ(counts, expected);
    EXPECT_EQ(masks, 68);
}

TEST(Images, AreAllDifferentAndNotEmpty) {
    std::map<std::string, int> seen;
    for (int i = 0; i < Assets::imageCount; ++i) {
        const Engine::Image& image = Assets::records.images[i];
        const std::string pixels(static_cast<const char*>(image.pixels), image.dataSize);
        EXPECT_NE(pixels.find_first_not_of('\0'), std::string::npos) << i;
        const auto [other, isNew] = seen.emplace(std::to_string(image.width) + pixels, i);
        EXPECT_TRUE(isNew) << i << " looks like " << other->second;
    }
}

TEST(Images, ColoursLieInMemoryAsBlueGreenRedAlpha) {
    const auto* pixels = static_cast<const std::uint8_t*>(Images::swatches.pixels) + 4 * (20 + 5);
    EXPECT_EQ(pixels[0], 0x42);
    EXPECT_EQ(pixels[1], 0x4C);
    EXPECT_EQ(pixels[2], 0xFF);
    EXPECT_EQ(pixels[3], 0xFF);
}

// They are stretched by nine slices: beyond the corners every row and column is alike.
TEST(Images, PlatesStretch) {
    for (const Engine::Image* image : {&Images::plate, &Images::outline}) {
        const auto* pixels = static_cast<const std::uint8_t*>(image->pixels);
        for (std::size_t y = 0; y < 30; ++y)
            for (std::size_t x = 10; x < 20; ++x) {
                EXPECT_EQ(pixels[y * 30 + x], pixels[y * 30 + 10]);
                EXPECT_EQ(pixels[x * 30 + y], pixels[10 * 30 + y]);
            }
    }
}
