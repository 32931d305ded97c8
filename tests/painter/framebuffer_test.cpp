// The frame around the drawing: rotation, clip, colours, clones and descriptions.
#include <memory>
#include <new>

#include "tests/painter/target.h"

using Engine::Image;
using Engine::Painter;
using Engine::Rect;

TEST(Rects, UniteAndIntersect) {
    EXPECT_EQ(uniteRect({}, Rect{3, 4, 5, 6}), (Rect{3, 4, 5, 6}));
    EXPECT_EQ(uniteRect(Rect{3, 4, 5, 6}, {}), (Rect{0, 0, 8, 10})) << "an empty second one stretches to the origin";
    EXPECT_EQ(uniteRect(Rect{-2, 1, 4, 2}, Rect{5, 0, 1, 9}), (Rect{-2, 0, 8, 9}));
    EXPECT_EQ(intersectRect(Rect{0, 0, 10, 10}, Rect{4, -2, 10, 5}), (Rect{4, 0, 6, 3}));
    EXPECT_EQ(intersectRect(Rect{0, 0, 4, 4}, Rect{4, 0, 4, 4}), Rect{});
    EXPECT_EQ(intersectRect(Rect{32000, 0, 32000, 4}, Rect{32100, 1, 32767, 1}), (Rect{32100, 1, 31900, 1}));
    EXPECT_EQ(uniteRect(Rect{-32768, 0, 1, 1}, Rect{32767, 0, 1, 1}), (Rect{-32768, 0, 32767, 1}));
}

TEST(Rotation, TakesQuarterTurnsOnly) {
    Target<unsigned int> target(24, 40);
    auto& painter = target.painter;
    EXPECT_TRUE(painter.setRotationDegrees(-90));
    EXPECT_EQ(painter.rotationIndex(), 3U);
    EXPECT_FALSE(painter.setRotationDegrees(45));
    EXPECT_EQ(painter.rotationIndex(), 3U);
    EXPECT_TRUE(painter.setRotationDegrees(450));
    EXPECT_EQ(painter.rotationIndex(), 1U);
    EXPECT_EQ(painter.logicalWidth(), 40);
    EXPECT_EQ(painter.logicalHeight(), 24);
    EXPECT_EQ(painter.width(), 24U);
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 24, 40})) << "a turn leaves the clip alone";
}

TEST(Clip, KeepsTheSizeOfANegativeOriginOnAnEmptyStackOnly) {
    Target<unsigned int> target(40, 30);
    auto& painter = target.painter;
    painter.pushClip({-5, -3, 20, 10}, false);
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 20, 10}));
    painter.pushClip({0, 0, 40, 30}, false);
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 15, 7})) << "cut down to the rectangle that was pushed";
    painter.pushClip({30, 20, 40, 40}, true);
    EXPECT_EQ(painter.clip(), (Rect{30, 20, 10, 10}));
    painter.popClip();
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 15, 7}));
    painter.popClip();
    painter.popClip();
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 40, 30}));
    painter.popClip();
    painter.pushClip({1, 1, 1, 1}, false);
    painter.resetClipStack();
    EXPECT_EQ(painter.clip(), (Rect{0, 0, 40, 30}));
}

TEST(Clip, EraseSaysWhetherAnythingIsLeft) {
    Target<unsigned int> target(8, 4);
    EXPECT_FALSE(target.painter.erase({8, 0, 4, 4})) << "begins at the very edge";
    EXPECT_FALSE(target.painter.erase({2, 2, 0, 4}));
    EXPECT_TRUE(target.painter.erase({7, 3, 4, 4}));
}

TEST(Clear, FollowsTheTopOfTheStackAndIgnoresTheClipWithoutOne) {
    Target<unsigned int> target(4, 3);
    target.letters = {{0, '.'}, {1, 'a'}, {2, 'b'}};
    target.painter.setBackground(1);
    target.painter.setClip({1, 1, 1, 1});
    target.painter.clear();
    target.painter.pushClip({1, 1, 2, 1}, false);
    target.painter.setBackground(2);
    target.painter.clear();
    EXPECT_EQ(target.picture(), (Picture{"aaaa", "abba", "aaaa"}));
}

TEST(Clear, LeavesARestOfHalfWords) {
    Target<unsigned short> pairs(3, 3, 0, 9);
    pairs.letters[0] = '0';
    pairs.painter.clear();
    EXPECT_EQ(pairs.picture(), (Picture{"000", "000", "00."}));

    Target<unsigned char> fours(5, 3, 0, 9);
    fours.letters[0] = '0';
    fours.painter.clear();
    EXPECT_EQ(fours.picture(), (Picture{"00000", "00000", "00..."}));
}

TEST(Colors, AreDrawnOnlyAfterSetColors) {
    Target<unsigned int> target(1, 1);
    auto& painter = target.painter;
    painter.setBackground(0xff010203);
    painter.setColors(0, 0xff040506);
    EXPECT_EQ(painter.background(), 0xff010203U);
    painter.fill({0, 0, 1, 1});
    EXPECT_EQ(target.at(0, 0), 0xff040506U);

    Painter::Style style = painter.style();
    style.background = 0xff070809;
    painter.applyStyle(style);
    painter.fill({0, 0, 1, 1});
    EXPECT_EQ(target.at(0, 0), 0xff070809U);
}

TEST(Colors, OfSixteenBitsCarryTheOpaqueFlag) {
    Target<unsigned short> target(1, 1);
    target.painter.setColors(0, 0xfff8a810);
    target.painter.fillRect({0, 0, 1, 1}, false);
    EXPECT_EQ(target.at(0, 0), 0x8000 | 31 << 10 | 21 << 5 | 2);
    target.painter.setColors(0, 0xfef8a810);
    target.painter.fillRect({0, 0, 1, 1}, false);
    EXPECT_EQ(target.at(0, 0), 31 << 10 | 21 << 5 | 2);
}

TEST(Colors, OfAnIndexTargetAreSearchedAsFarAsTheRamp) {
    const Engine::Color palette[] = {10, 20, 30, 40, 50, 20, 60};
    Target<unsigned char> target(2, 1, 0, 99, 2);
    const unsigned char samples[] = {0, 1};
    const auto shown = [&](Engine::Color foreground, Engine::Color background) {
        target.painter.setColors(foreground, background);
        target.painter.fillRect({0, 0, 1, 1}, false);
        target.painter.drawImage({2, 2, 1, Image::Mask8, samples}, 0, 0, {0, 0, 2, 1});
        return std::pair(int{target.at(0, 0)}, target.at(1, 0) - 1);
    };
    EXPECT_EQ(shown(20, 10), std::pair(0, 0)) << "no palette yet";
    target.painter.setPalette(palette, 7);
    EXPECT_EQ(shown(20, 30), std::pair(2, 5)) << "the last entry of a colour, up to the ramp's end";
    EXPECT_EQ(shown(40, 30), std::pair(2, 3));
    EXPECT_EQ(shown(50, 10), std::pair(0, 0)) << "three entries after the background the search is over";
    EXPECT_EQ(shown(40, 10), std::pair(0, 3));
    EXPECT_EQ(shown(77, 88), std::pair(0, 0));
}

TEST(Fill, OfAnInvisibleIndexDrawsNothing) {
    const Engine::Color palette[] = {0xff000000, 0x00123456};
    Target<unsigned char> target(2, 1);
    target.letters[1] = '1';
    target.painter.setPalette(palette, 2);
    target.painter.setColors(0, 0x00123456);
    target.painter.fill({0, 0, 1, 1});
    EXPECT_EQ(target.picture(), (Picture{".."}));
    EXPECT_TRUE(target.painter.erase({1, 0, 1, 1}));
    EXPECT_EQ(target.picture(), (Picture{".1"}));
}

TEST(Align, MovesTheInnerRect) {
    Target<unsigned int> target(4, 4);
    auto& painter = target.painter;
    Rect inner{50, 60, 7, 9};
    painter.setAlign(Painter::Align::Centre, Painter::Align::End);
    painter.alignRect(inner, {10, 20, 4, 30});
    EXPECT_EQ(inner, (Rect{9, 41, 7, 9})) << "half of -3 is -1";
    painter.setAlign(Painter::Align::Start, Painter::Align{7});
    painter.alignRect(inner, {10, 20, 4, 30});
    EXPECT_EQ(inner, (Rect{10, 20, 7, 9}));
}

TEST(Surfaces, AreDescribedAndCopiedWithTheirAlpha) {
    Target<unsigned int> target(3, 2, 1);
    std::unique_ptr<Painter> clone(target.painter.clone());
    EXPECT_EQ(clone->logicalWidth(), 2);
    EXPECT_EQ(clone->rotationIndex(), 1U);
    clone->setBackground(0x11223344);
    clone->clear();
    Image image;
    clone->describe(image);
    EXPECT_EQ(image.dataSize, 24U);
    EXPECT_EQ(image.width, 3U);
    EXPECT_EQ(image.height, 2U);
    EXPECT_EQ(image.format, Image::Argb1555);

    target.letters[0x11223344] = '#';
    target.painter.setRotationDegrees(0);
    target.painter.resetClip();
    target.painter.copyImage(image, 0, 0, {1, 1, 3, 2});
    EXPECT_EQ(target.picture(), (Picture{"...", ".##"}));
}

TEST(Surfaces, RefuseSizesThatCannotBe) {
    Target<unsigned int> words(1, 1);
    EXPECT_THROW(words.painter.createSurface(1U << 15, 1U << 14), std::bad_array_new_length);
    Target<unsigned short> halves(1, 1);
    EXPECT_THROW(halves.painter.createSurface(1U << 15, 1U << 15), std::bad_array_new_length);
    std::unique_ptr<Engine::Surface> small(words.painter.createSurface(5, 6));
    EXPECT_EQ(small->width(), 5U);
    EXPECT_EQ(small->painter()->logicalHeight(), 6);
}

TEST(Surfaces, CopyAsViewsAndMoveToOtherPixels) {
    Target<unsigned int> target(2, 1);
    target.letters = {{0, '.'}, {5, 'a'}};
    Engine::Framebuffer<unsigned int> view(target.painter);
    view.setColors(0, 5);
    view.fillRect({0, 0, 1, 1}, false);
    EXPECT_EQ(target.picture(), (Picture{"a."}));

    Support::GuardedPixels<unsigned int> back(2, 1, 0);
    view.setPixels(back.data());
    view.fillRect({0, 0, 2, 1}, false);
    EXPECT_EQ(back.at(1, 0), 5U);
    EXPECT_EQ(target.picture(), (Picture{"a."}));

    std::unique_ptr<Engine::Framebuffer<unsigned int>> clone(target.painter.clone());
    *clone = target.painter;
    EXPECT_EQ(clone->pixels(), target.pixels.data());
}
