#include <gtest/gtest.h>

#include <map>

#include "testfont.h"

namespace {

using TextTest::TestFont;

TEST(Font, FindsEveryCodeAndAnswersTheReplacementForTheRest) {
    for (std::uint16_t count = 0; count < 1000;
         count = static_cast<std::uint16_t>(count < 40 ? count + 1 : count + 61)) {
        std::map<std::uint16_t, std::uint16_t> advances;
        for (std::uint16_t i = 0; i < count; ++i) advances[static_cast<std::uint16_t>(10 + i * 3)] = 5;
        TestFont font(advances);
        for (std::uint32_t code = 1; code < 10u + count * 3u + 3u; ++code) {
            const bool present = code >= 10 && (code - 10) % 3 == 0 && (code - 10) / 3 < count;
            ASSERT_EQ(font.preGenerated().glyphIndex(code), present ? 1 + (code - 10) / 3 : 0) << count << ' ' << code;
        }
    }
}

TEST(Font, AsciiIsFoundInFontsWithAndWithoutTheUsualOrder) {
    TestFont usual(TestFont::monospaced(5));
    EXPECT_EQ(usual.preGenerated().glyphIndex('A'), 'A' - 30u);
    auto advances = TestFont::monospaced(5);
    advances[13] = 5;
    TestFont shifted(advances);
    EXPECT_EQ(shifted.preGenerated().glyphIndex('A'), 'A' - 29u);
    advances.erase('A');
    TestFont lacking(advances);
    EXPECT_EQ(lacking.preGenerated().glyphIndex('A'), 0u);
}

TEST(Font, CodesFromTheLimitOnHaveNoGlyph) {
    TestFont font({{0xFF1F, 5}, {0xFF20, 5}});
    EXPECT_EQ(font.preGenerated().glyphIndex(0xFF1F), 1u);
    EXPECT_EQ(font.preGenerated().glyphIndex(0xFF20), 0u);
    EXPECT_EQ(font.preGenerated().glyphIndex(0x1FF1F), 0u);
}

TEST(Font, MetricsAreThoseOfTheSelectedGlyph) {
    TestFont font({{'a', 5}, {'b', 9}});
    font.font()->selectGlyph('b', true);
    EXPECT_EQ(font.font()->advance(), 9);
    EXPECT_EQ(font.font()->glyphWidth(), 8);
    EXPECT_EQ(font.font()->atlasX(), 80);
    font.font()->selectGlyph('?', true);
    EXPECT_EQ(font.font()->advance(), 8);
}

}  // namespace
