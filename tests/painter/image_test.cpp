// Each format's own rules, in pictures small enough to work out by hand.
#include "tests/painter/target.h"

using Engine::Image;
using Engine::Rect;

namespace {

constexpr unsigned grey = 0x77646464;  // 100 in each channel; the top byte is to stay

}  // namespace

TEST(Images, MasksTakeTheForegroundAndItsAlphaOnlyAsAGate) {
    const std::vector<unsigned char> mask = {0, 255, 128};
    Target<unsigned int> target(3, 1, 0, grey);
    target.letters = {{grey, '.'}, {0x77ffffff, '#'}, {0x77b1b1b1, '+'}};
    target.painter.setForeground(0x00ffffff);
    target.painter.drawImage(imageOf(mask, 3, Image::Mask8), 0, 0, {0, 0, 3, 1});
    EXPECT_EQ(target.picture(), (Picture{"..."}));
    target.painter.setForeground(0x01ffffff);
    target.painter.drawImage(imageOf(mask, 3, Image::Mask8), 0, 0, {0, 0, 3, 1});
    EXPECT_EQ(target.picture(), (Picture{".#+"})) << "(128 * 255 + 127 * 100) / 255 is 177";
}

TEST(Images, MasksOfFewerBitsAreWidened) {
    const std::vector<unsigned char> mask = {0, 15, 7, 16};
    Target<unsigned int> target(4, 1, 0, 0, 4);
    target.letters = {{0, '.'}, {0x00ffffff, '#'}, {0x00777777, '+'}, {0x00101010, '-'}};
    target.painter.setForeground(0xffffffff);
    target.painter.drawImage(imageOf(mask, 4, Image::Mask8), 0, 0, {0, 0, 4, 1});
    EXPECT_EQ(target.picture(), (Picture{".#+-"})) << "a sample beyond the depth, 16 * 255 / 15, is cut to 8 bits";
}

TEST(Images, TrueAlphaKeepsTheTopByteAndACopyDoesNot) {
    const std::vector<unsigned> argb = {0x00ffffff, 0xffffffff, 0x80000000};
    Target<unsigned int> target(3, 1, 0, grey);
    target.letters = {{grey, '.'}, {0x77ffffff, '#'}, {0x77313131, '+'}, {0x00ffffff, 'o'}};
    target.painter.drawImage(imageOf(argb, 3, Image::Argb8888Alt), 0, 0, {0, 0, 3, 1});
    EXPECT_EQ(target.picture(), (Picture{".#+"}));
    target.painter.copyImage(imageOf(argb, 3, Image::Argb8888), 0, 0, {0, 0, 1, 1});
    EXPECT_EQ(target.picture(), (Picture{"o#+"}));
}

TEST(Images, ZeroIsDrawnUnscaledAndSkippedScaled) {
    const std::vector<unsigned short> fixed = {0x0000, 0x8000};
    const std::vector<unsigned char> indices = {0, 1};
    const Engine::Color palette[] = {0x01020304, 0x00050607};
    Target<unsigned int> target(2, 4, 0, grey);
    target.letters = {{grey, '.'}, {0x77313131, '+'}, {0x77000000, '#'}, {palette[0], '0'}, {palette[1], '1'}};
    target.painter.setPalette(palette, 2);
    target.painter.drawImage(imageOf(fixed, 2, Image::Argb1555), 0, 0, {0, 0, 2, 1});
    target.painter.drawImageScaled(imageOf(fixed, 2, Image::Argb1555Alt), {0, 0, 2, 1}, {0, 1, 2, 1});
    target.painter.drawImage(imageOf(indices, 2, Image::Indexed8), 0, 0, {0, 2, 2, 1});
    target.painter.drawImageScaled(imageOf(indices, 2, Image::Indexed8), {0, 0, 2, 1}, {0, 3, 2, 1});
    EXPECT_EQ(target.picture(), (Picture{"+#", ".#", "01", ".1"}));
}

TEST(Images, OfColorsAreNotShownByAnIndexTarget) {
    const std::vector<unsigned> argb = {0xffffffff};
    const std::vector<unsigned short> fixed = {0xffff};
    Target<unsigned char> target(1, 1);
    target.painter.drawImage(imageOf(argb, 1, Image::Argb8888), 0, 0, {0, 0, 1, 1});
    target.painter.drawImageScaled(imageOf(fixed, 1, Image::Argb1555), {0, 0, 1, 1}, {0, 0, 1, 1});
    EXPECT_EQ(target.picture(), (Picture{"."}));
}

TEST(Images, SixteenBitTargetsKeepTheirFlag) {
    const std::vector<unsigned> argb = {0xffffffff, 0xff000000};
    Target<unsigned short> target(2, 1, 0, 0x8000);
    target.letters = {{0xffff, '#'}, {0x8000, '.'}};
    target.painter.drawImage(imageOf(argb, 2, Image::Argb8888), 0, 0, {0, 0, 2, 1});
    EXPECT_EQ(target.picture(), (Picture{"#."}));
}

TEST(ScaledImages, StepTheirErrorTerm) {
    const std::vector<unsigned> argb = {0xff000001, 0xff000002, 0xff000003};
    Target<unsigned int> target(8, 1);
    target.letters = {{0, '.'}, {1, '1'}, {2, '2'}, {3, '3'}};
    const Image image = imageOf(argb, 3, Image::Argb8888);
    target.painter.drawImageScaled(image, {0, 0, 3, 1}, {0, 0, 8, 1});
    EXPECT_EQ(target.picture(), (Picture{"11122233"}));
    target.painter.fillRect({0, 0, 8, 1}, false);
    target.painter.drawImageScaled(image, {0, 0, 3, 1}, {6, 0, 2, 1});
    EXPECT_EQ(target.picture(), (Picture{"......12"}));
}

TEST(ScaledImages, AreCutByThousandthsOfAtLeastOne) {
    const std::vector<unsigned> argb = {0xff000001, 0xff000002, 0xff000003};
    Target<unsigned int> target(4, 1);
    target.letters = {{0, '.'}, {1, '1'}, {2, '2'}, {3, '3'}};
    target.painter.drawImageScaled(imageOf(argb, 3, Image::Argb8888), {0, 0, 3, 1}, {-1500, 0, 3100, 1});
    EXPECT_EQ(target.picture(), (Picture{"2222"}))
        << "1500 pixels cut off at the left and 1596 at the right take one each";
}

TEST(Halo, IsAHardSilhouetteInTheBackgroundColor) {
    const std::vector<unsigned char> mask = {1, 0, 0,  //
                                             0, 0, 0,  //
                                             0, 0, 200};
    Target<unsigned int> target(9, 7);
    target.letters[0x40ffffff] = '#';
    target.painter.setBackground(0x40ffffff);
    const Image image = imageOf(mask, 3, Image::Mask8);
    target.painter.drawMaskHalo(image, 0, 0, {2, 2, 3, 3}, 1);
    EXPECT_EQ(target.picture(),
              (Picture{".........", ".###.....", ".###.....", ".#####...", "...###...", "...###...", "........."}));
    target.painter.drawMaskHalo(image, 0, 0, {2, 2, 3, 3}, 6);
    target.painter.drawMaskHalo(image, 0, 0, {2, 2, 3, 3}, -1);
    target.painter.drawMaskHalo(imageOf(mask, 3, Image::Indexed8), 0, 0, {6, 2, 3, 3}, 1);
    EXPECT_EQ(target.picture()[2], ".###.....");
}

TEST(Halo, OfAGlyphDoesNotShowItsNeighboursInTheAtlas) {
    const std::vector<unsigned char> atlas = {9, 0, 9};
    Target<unsigned int> target(5, 1);
    target.letters[1] = '#';
    target.painter.setBackground(1);
    target.painter.drawMaskHalo(imageOf(atlas, 3, Image::Mask8), 1, 0, {2, 0, 1, 1}, 1);
    EXPECT_EQ(target.picture(), (Picture{"....."}));
    target.painter.drawMaskHalo(imageOf(atlas, 3, Image::Mask8), 2, 0, {2, 0, 1, 1}, 1);
    EXPECT_EQ(target.picture(), (Picture{".###."}));
}
