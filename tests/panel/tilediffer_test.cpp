#include "unit/panel/tilediffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

using Platform::Virtual::Picture;
using Unit::TileDiffer;

/// What a browser makes of the messages, and whether they are what they say.
class Screen {
  public:
    std::size_t tiles = 0;  ///< of the last message
    std::vector<std::uint32_t> pixels;

    void take(const std::string& message) {
        std::size_t at = 0;
        read<std::uint32_t>(message, at);
        width_ = read<std::uint16_t>(message, at);
        height_ = read<std::uint16_t>(message, at);
        const unsigned side = read<std::uint16_t>(message, at);
        tiles = read<std::uint16_t>(message, at);
        pixels.resize(std::size_t{width_} * height_, 0xdead);
        for (std::size_t i = 0; i < tiles; ++i) takeTile(message, at, side);
        EXPECT_EQ(at, message.size());
    }

  private:
    template <typename Word>
    static Word read(const std::string& message, std::size_t& at) {
        Word word = 0;
        if (at + sizeof word > message.size()) throw std::out_of_range("the message ends too early");
        std::memcpy(&word, message.data() + at, sizeof word);
        at += sizeof word;
        return word;
    }

    void takeTile(const std::string& message, std::size_t& at, unsigned side) {
        const unsigned index = read<std::uint16_t>(message, at), words = read<std::uint16_t>(message, at);
        const unsigned columns = (width_ + side - 1) / side;
        const unsigned left = index % columns * side, right = std::min(left + side, width_);
        unsigned x = left, y = index / columns * side;
        EXPECT_LE(words, side * side);
        for (unsigned i = 0; i < words; ++i) {
            const auto word = read<std::uint32_t>(message, at);
            for (unsigned run = (word >> 24) + 1; run > 0; --run) {
                pixels.at(std::size_t{y} * width_ + x) = word & 0xffffff;
                if (++x < right) continue;
                x = left;
                ++y;
            }
        }
        EXPECT_EQ(x, left);
        EXPECT_EQ(y, std::min(index / columns * side + side, height_));
    }

    unsigned width_ = 0, height_ = 0;
};

std::vector<std::uint32_t> withoutAlpha(std::vector<std::uint32_t> pixels) {
    for (auto& pixel : pixels) pixel &= 0xffffff;
    return pixels;
}

Picture blank(unsigned width, unsigned height) {
    return {width, height, std::vector<std::uint32_t>(std::size_t{width} * height, 0xff000000)};
}

}  // namespace

TEST(TileDiffer, TheFirstMessageIsWholeAndTheNextHoldsWhatHasChanged) {
    TileDiffer differ;
    Screen screen;
    Picture picture = blank(240, 400);
    const std::string first = differ.encode(picture, 1);
    screen.take(first);
    EXPECT_EQ(screen.tiles, 15U * 25);
    EXPECT_LT(first.size(), 4000U) << "one word a tile of one colour";
    EXPECT_EQ(screen.pixels, withoutAlpha(picture.pixels));

    EXPECT_EQ(differ.encode(picture, 2), "");
    picture.pixels[17 * 240 + 239] = 0xff123456;
    screen.take(differ.encode(picture, 3));
    EXPECT_EQ(screen.tiles, 1U);
    EXPECT_EQ(screen.pixels, withoutAlpha(picture.pixels));

    differ.forget();
    screen.take(differ.encode(picture, 4));
    EXPECT_EQ(screen.tiles, 15U * 25);
}

TEST(TileDiffer, EveryPictureArrivesAndNoTileIsLongerThanItsPixels) {
    std::mt19937 random(7);
    for (const auto& [width, height] : {std::pair{240U, 400U}, {17U, 5U}, {33U, 48U}, {1U, 1U}}) {
        TileDiffer differ;
        Screen screen;
        Picture picture = blank(width, height);
        for (std::uint32_t frame = 0; frame < 20; ++frame) {
            const auto count = random() % 600;
            for (unsigned i = 0; i < count; ++i)
                picture.pixels[random() % picture.pixels.size()] =
                    frame % 3 == 0 ? static_cast<std::uint32_t>(random()) : 0xffffffff;
            if (const std::string message = differ.encode(picture, frame); !message.empty()) screen.take(message);
            ASSERT_EQ(screen.pixels, withoutAlpha(picture.pixels)) << width << "x" << height;
        }
    }
}

TEST(TileDiffer, AnotherModeIsToldWhole) {
    TileDiffer differ;
    Screen screen;
    screen.take(differ.encode(blank(240, 400), 1));
    screen.take(differ.encode(blank(400, 240), 2));
    EXPECT_EQ(screen.tiles, 25U * 15);
    EXPECT_EQ(differ.encode(Picture{}, 3), "");
}
