#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "recordingpainter.h"
#include "testfont.h"

namespace {

using Engine::Rect;
using Engine::TextLine;
using testing::ElementsAre;
using TextTest::RecordingPainter;
using TextTest::TestFont;

constexpr Rect wide{0, 0, 200, 100};

class Layout : public testing::Test {
  protected:
    Layout() { painter.setFont(font.font()); }

    /// The lines as "text:width", the text cut out of the original by the line's byte range.
    std::vector<std::string> lines(const std::string& text, int width, int maxChars = -1) {
        std::vector<std::string> result;
        for (const TextLine& line :
             painter.layoutText(text.c_str(), {0, 0, static_cast<std::int16_t>(width), 50}, maxChars)) {
            result.push_back(
                text.substr(static_cast<std::size_t>(line.byteStart), static_cast<std::size_t>(line.byteCount)) + ":" +
                std::to_string(line.width));
        }
        return result;
    }

    TestFont font{TestFont::monospaced(5)};
    RecordingPainter painter;
};

TEST_F(Layout, WithoutWrapOnlyLineFeedsBreak) {
    painter.setTabularDigits(false);
    EXPECT_THAT(lines("some words here", 10), ElementsAre("some words here:75"));
    EXPECT_THAT(lines("ab \ncd\n", 10), ElementsAre("ab:10", "cd:10", ":0"));
    EXPECT_THAT(lines("\n\n", 10), ElementsAre(":0", ":0", ":0"));
}

TEST_F(Layout, WrapBreaksAtTheLastSpacesThatFit) {
    painter.setWrap(true);
    EXPECT_THAT(lines("ab cd ef", 30), ElementsAre("ab cd:25", "ef:10"));
    EXPECT_THAT(lines("ab cd ef", 24), ElementsAre("ab:10", "cd:10", "ef:10"));
    EXPECT_THAT(lines("ab cd", 25), ElementsAre("ab cd:25"));
    EXPECT_THAT(lines("ab  cd", 25), ElementsAre("ab:10", "cd:10")) << "a run of spaces goes as a whole";
    EXPECT_THAT(lines("ab cd", 10), ElementsAre("ab:10", "cd:10")) << "the space itself passes the width";
    EXPECT_THAT(lines("abcde  fg", 25), ElementsAre("abcde:25", " fg:15")) << "but later spaces head the next line";
}

TEST_F(Layout, WrapBreaksALongWordAtTheCharacterThatPasses) {
    painter.setWrap(true);
    EXPECT_THAT(lines("abcdefg", 15), ElementsAre("abc:15", "def:15", "g:5"));
    EXPECT_THAT(lines("a bcdefg", 15), ElementsAre("a:5", "bcd:15", "efg:15"));
    EXPECT_THAT(lines("ab", 4), ElementsAre(":0", "a:5", "b:5")) << "narrower than the first character";
}

TEST_F(Layout, CharacterLimitCountsCharactersNotBytes) {
    EXPECT_THAT(lines("a\xC3\xA4"
                      "bc",
                      100, 2),
                ElementsAre("a\xC3\xA4:13"));
    EXPECT_THAT(lines("abc", 100, 0), ElementsAre(":0"));
    EXPECT_THAT(lines("ab\ncd", 100, 3), ElementsAre("ab:10", ":0"));
}

TEST_F(Layout, EmptyTextIsOneLineOfZeros) {
    for (const char* text : {"",
                             "\xE9"
                             "abc",
                             "\x80\x80"}) {
        const auto result = painter.layoutText(text, wide, -1);
        ASSERT_EQ(result.size(), 1u);
        EXPECT_EQ(result[0].width + result[0].top + result[0].bottom + result[0].byteCount + result[0].byteStart, 0);
    }
    painter.setFont(nullptr);
    EXPECT_TRUE(painter.layoutText("abc", wide, -1).empty());
}

TEST_F(Layout, BrokenBytesEndTheTextAndCountInItsBytes) {
    EXPECT_THAT(lines("ab\xE9"
                      "cd",
                      100),
                ElementsAre("ab\xE9:10"));
    EXPECT_THAT(lines("ab\xE4\xB8", 100), ElementsAre("ab\xE4\xB8:10"));
}

TEST_F(Layout, ExtentIsThatOfTheInkWithTheBaseline) {
    TestFont lowered({{'a', 5}, {' ', 5}}, 6, -3);
    painter.setFont(lowered.font());
    const auto result = painter.layoutText("a", wide, -1);
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].top, -3 + TestFont::inkTop);
    EXPECT_EQ(result[0].bottom, -3 + TestFont::inkTop + TestFont::inkHeight);
}

TEST_F(Layout, TabularDigitsTakeOneCell) {
    TestFont proportional({{'0', 7}, {'1', 3}, {'2', 6}, {'3', 6}, {'4', 6}, {':', 3}}, 8);
    painter.setFont(proportional.font());
    const auto width = [&](const char* text) {
        int result = 0;
        painter.measureText(text, wide, &result, nullptr, -1);
        return result;
    };
    EXPECT_EQ(width("12:34"), width("11:11"));
    painter.drawText("10", wide, 0, 0, -1);
    EXPECT_EQ(painter.glyphs(), "13 09") << "ink 2 and 6 wide, centred in cells of 8";
    painter.setTabularDigits(false);
    EXPECT_NE(width("12:34"), width("11:11"));
}

TEST_F(Layout, MeasuresTheWidestLineAndTheirNumber) {
    int width = 0;
    int height = 0;
    painter.measureText("ab\nabcd\na", wide, &width, &height, -1);
    EXPECT_EQ(width, 20);
    EXPECT_EQ(height, 30);
    painter.setFont(nullptr);
    painter.measureText("ab", wide, &width, &height, -1);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 0);
}

class Drawing : public Layout {
  protected:
    Drawing() { painter.setTabularDigits(false); }

    /// Draws "g0 ..." with pens instead of ink: the test font's bearing of 1 is taken off.
    std::string draw(const char* text, Rect rect, int scrollX = 0) {
        painter.calls.clear();
        end = painter.drawText(text, rect, scrollX, 0, -1);
        for (auto& call : painter.calls) call.place.x = static_cast<std::int16_t>(call.place.x - 1);
        return painter.glyphs();
    }

    int end = 0;
};

TEST_F(Drawing, AlignsLinesAndAnswersThePenBehindTheLastOne) {
    const Rect rect{10, 20, 50, 41};
    EXPECT_EQ(draw("ab\nc", rect), "a10 b15 c10");
    EXPECT_EQ(end, 15);
    painter.setAlign(Engine::Painter::Align::Centre, Engine::Painter::Align::Centre);
    EXPECT_EQ(draw("ab\nc", rect), "a30 b35 c32");
    EXPECT_EQ(painter.calls[0].place.y, 20 + 10 + TestFont::inkTop);
    painter.setAlign(Engine::Painter::Align::End, Engine::Painter::Align::End);
    EXPECT_EQ(draw("ab\nc", rect), "a49 b54 c54") << "one pixel stays clear at the end";
    EXPECT_EQ(painter.calls[2].place.y, 20 + 41 - 10 + TestFont::inkTop);
    EXPECT_EQ(draw("0123456789", rect)[1], '9') << "also of a line as wide as the rectangle";
    EXPECT_EQ(draw("ab", rect, -7), "a42 b47");
}

TEST_F(Drawing, EllipsisAtTheEndReplacesWhatDoesNotFit) {
    const Rect rect{0, 0, 40, 10};
    painter.setEllipsis(1);
    EXPECT_EQ(draw("abcdefgh", rect), "a0 b5 c10 d15 e20 f25 g30 h35") << "no dots when the line fits";
    EXPECT_EQ(draw("abcdefghi", rect), "a0 b5 c10 d15 .20 .25 .30");
    EXPECT_EQ(end, 35);
    painter.setAlign(Engine::Painter::Align::End, Engine::Painter::Align::Start);
    EXPECT_EQ(draw("abcdefghi", rect), "a0 b5 c10 d15 .20 .25 .30") << "a line that is too long starts at the start";
    EXPECT_EQ(draw("abc", {0, 0, 12, 10}), ".0 .5 .10") << "narrower than the dots";
}

TEST_F(Drawing, EllipsisAtTheStartKeepsTheEndInView) {
    const Rect rect{0, 0, 40, 10};
    painter.setEllipsis(2);
    EXPECT_EQ(draw("abcdefgh", rect), "a0 b5 c10 d15 e20 f25 g30 h35");
    // Right aligned the text starts at -10: a to d end before the dots would, e gives way to them.
    EXPECT_EQ(draw("abcdefghij", rect), ".0 .5 .10 f15 g20 h25 i30 j35");
    EXPECT_EQ(draw("abcdefghij", {0, 0, 38, 10}), ".3 .8 .13 g18 h23 i28 j33");
}

TEST_F(Drawing, ManyLinesAreDrawnBeyondTheOnesThatAreKept) {
    std::string text;
    for (int i = 0; i < 70; ++i) text += "x\n";
    painter.setAlign(Engine::Painter::Align::Start, Engine::Painter::Align::End);
    draw(text.c_str(), wide);
    ASSERT_EQ(painter.calls.size(), 70u);
    for (int i = 0; i < 70; ++i)
        ASSERT_EQ(painter.calls[static_cast<std::size_t>(i)].place.y, 100 - 710 + 10 * i + TestFont::inkTop);
}

TEST_F(Drawing, HaloGoesThroughTheMaskHalo) {
    painter.setHaloRadius(2);
    painter.drawText("a b", wide, 0, 0, -1);
    ASSERT_EQ(painter.calls.size(), 2u);
    EXPECT_EQ(painter.calls[0].kind, 'h');
    EXPECT_EQ(painter.calls[0].srcY, TestFont::lineHeight + TestFont::inkTop);
}

TEST_F(Drawing, FarPensDoNotComeBackIntoView) {
    EXPECT_EQ(draw("abc", wide, 65536), "");
    EXPECT_EQ(end, 65536 + 15);
}

TEST_F(Drawing, BoundsAreThoseOfTheLines) {
    const auto bounds = [&](const char* text) {
        Rect result;
        painter.textBounds(text, {10, 20, 50, 40}, result, -1);
        return result;
    };
    EXPECT_EQ(bounds("ab\nabcd"), (Rect{10, 20, 20, 20}));
    painter.setAlign(Engine::Painter::Align::End, Engine::Painter::Align::End);
    EXPECT_EQ(bounds("ab"), (Rect{49, 50, 10, 10}));
    painter.setAlign(Engine::Painter::Align::Centre, Engine::Painter::Align::Centre);
    EXPECT_EQ(bounds("ab"), (Rect{30, 35, 10, 10}));
}

}  // namespace
