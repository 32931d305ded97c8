// Random operations at every depth and rotation against the literal ones. Since the reference places pixels by the
// table of rotations, this also says that the four rotations show the same logical picture.
#include "tests/painter/reference.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/painter/target.h"

using Engine::Image;
using Engine::Rect;

namespace {

/// The same words in every run.
std::uint32_t randomWord() {
    static std::mt19937 random(7);
    return static_cast<std::uint32_t>(random());
}

int between(int low, int high) {
    return low + static_cast<int>(randomWord() % static_cast<unsigned>(high - low + 1));
}

Rect randomRect(int reach) {
    const auto side = [&](int low, int high) { return static_cast<std::int16_t>(between(low, high)); };
    return {side(-reach, reach), side(-reach, reach), side(-2, reach), side(-2, reach)};
}

template <typename T>
std::vector<T> randomPixels(std::size_t size) {
    std::vector<T> pixels(size);
    for (auto& pixel : pixels) pixel = static_cast<T>(randomWord() % 4 == 0 ? 0 : randomWord());
    return pixels;
}

std::vector<Engine::Color> rampPalette() {
    std::vector<Engine::Color> palette(200);
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i] = static_cast<Engine::Color>(i * 0x010203U) | (i % 3 == 0 ? 0U : 0xff000000U);
    return palette;
}

/// A painter and its reference over the same random pixels, clip and colours.
template <typename T>
struct Both {
    Both(int width, int height, unsigned rotation, unsigned sampleBits)
        : target(static_cast<unsigned>(width), static_cast<unsigned>(height), rotation, 0, sampleBits),
          reference(width, height, rotation, start(static_cast<std::size_t>(width * height))),
          palette(rampPalette()) {
        std::copy(reference.pixels().begin(), reference.pixels().end(), target.pixels.data());
        reference.palette = palette;
        reference.sampleBits = sampleBits;
        reference.foreground = palette[randomWord() % 150];
        reference.background = palette[randomWord() % 150];
        if (sizeof(T) > 1 && randomWord() % 2 == 0) reference.background = randomWord();
        target.painter.setPalette(palette.data(), static_cast<int>(palette.size()));
        target.painter.setColors(reference.foreground, reference.background);
        if (randomWord() % 2 == 0) target.painter.setClip(randomRect(40));
        reference.clip = target.painter.clip();
    }

    static std::vector<T> start(std::size_t size) { return randomPixels<T>(size); }

    testing::AssertionResult same() const {
        for (std::size_t i = 0; i < reference.pixels().size(); ++i)
            if (target.pixels.data()[i] != reference.pixels()[i])
                return testing::AssertionFailure()
                       << "pixel " << i % target.pixels.width() << ", " << i / target.pixels.width() << " is "
                       << std::hex << unsigned{target.pixels.data()[i]} << " instead of "
                       << unsigned{reference.pixels()[i]};
        return testing::AssertionSuccess();
    }

    Target<T> target;
    Reference<T> reference;
    std::vector<Engine::Color> palette;
};

/// A random image; its pixels end with the last one, so that the sanitizers find a read beyond it.
struct RandomImage {
    std::vector<std::uint32_t> words;
    Image image;

    explicit RandomImage(Image::Format format) {
        const unsigned size = format == Image::Argb8888 ? 4 : format == Image::Argb1555 ? 2 : 1;
        const auto width = static_cast<unsigned>(between(0, 70));
        const auto height = static_cast<unsigned>(between(0, 30));
        const unsigned bytes = width * height * size;
        words = randomPixels<std::uint32_t>((bytes + 3) / 4);
        image = {bytes, width, height, format, words.data()};
    }
};

template <typename T>
class AgainstReference : public testing::Test {
  public:
    /// Runs draw(both) many times on random targets; draw does the same to the painter and to the reference.
    template <typename Draw>
    void compare(int rounds, Draw draw) {
        for (int round = 0; round < rounds; ++round) {
            const unsigned rotation = randomWord() % 4;
            const unsigned sampleBits = sizeof(T) > 1 && randomWord() % 3 == 0 ? randomWord() % 9 : 8;
            Both<T> both(between(1, 80), between(1, 40), rotation, sampleBits);
            draw(both);
            ASSERT_TRUE(both.same()) << "round " << round << ", rotation " << rotation << ", depth of samples "
                                     << sampleBits;
        }
    }

    static Image::Format randomFormat() {
        constexpr Image::Format formats[] = {Image::Indexed8, Image::Argb8888, Image::Argb1555, Image::Mask8};
        return formats[randomWord() % (4)];
    }
    /// Index targets show masks and indices only.
    static bool shows(Image::Format format) {
        return sizeof(T) > 1 || format == Image::Indexed8 || format == Image::Mask8;
    }
};

using Depths = testing::Types<unsigned char, unsigned short, unsigned int>;
TYPED_TEST_SUITE(AgainstReference, Depths);

}  // namespace

TYPED_TEST(AgainstReference, Fills) {
    this->compare(1500, [](auto& both) {
        const Rect rect = randomRect(80);
        const bool blend = sizeof(TypeParam) > 1 && randomWord() % 2 == 0;
        both.target.painter.fillRect(rect, blend);
        both.reference.fillRect(rect, blend);
    });
}

TYPED_TEST(AgainstReference, Images) {
    this->compare(3000, [](auto& both) {
        const auto format = TestFixture::randomFormat();
        const RandomImage picture(format);
        const Rect dst = randomRect(80);
        const int srcX = between(-20, 80);
        const int srcY = between(-20, 40);
        both.target.painter.drawImage(picture.image, srcX, srcY, dst);
        if (TestFixture::shows(format)) both.reference.drawImage(picture.image, srcX, srcY, dst);
    });
}

TYPED_TEST(AgainstReference, Copies) {
    this->compare(1500, [](auto& both) {
        constexpr Image::Format formats[] = {Image::Mask8, Image::Argb1555, Image::Argb1555, Image::Argb8888};
        const RandomImage picture(formats[sizeof(TypeParam) - 1]);
        const Rect dst = randomRect(80);
        const int srcX = between(-20, 80);
        const int srcY = between(-20, 40);
        both.target.painter.copyImage(picture.image, srcX, srcY, dst);
        both.reference.copyImage(picture.image, srcX, srcY, dst);
    });
}

TYPED_TEST(AgainstReference, ScaledImages) {
    this->compare(3000, [](auto& both) {
        const auto format = TestFixture::randomFormat();
        const RandomImage picture(format);
        const Rect src = randomRect(40);
        const Rect dst = randomRect(randomWord() % 4 == 0 ? 300 : 80);
        both.target.painter.drawImageScaled(picture.image, src, dst);
        if (TestFixture::shows(format)) both.reference.drawImageScaled(picture.image, src, dst);
    });
}

TYPED_TEST(AgainstReference, Halos) {
    this->compare(1000, [](auto& both) {
        RandomImage picture(Image::Mask8);
        for (auto& word : picture.words)
            if (randomWord() % 8 != 0) word = 0;
        const Rect dst = randomRect(80);
        const int srcX = between(-20, 80);
        const int srcY = between(-20, 40);
        const int radius = between(0, 5);
        both.target.painter.drawMaskHalo(picture.image, srcX, srcY, dst, radius);
        if (dst.width > 0 && dst.height > 0) both.reference.drawMaskHalo(picture.image, srcX, srcY, dst, radius);
    });
}

/// The four pieces of a divided clip draw what the whole draws, and no pixel twice: the mixing colours would show it.
TYPED_TEST(AgainstReference, ClipPiecesAddUp) {
    for (int round = 0; round < 300; ++round) {
        Both<TypeParam> whole(60, 30, randomWord() % 4, 8);
        Target<TypeParam> pieces(60, 30, whole.target.painter.rotationIndex());
        std::copy(whole.reference.pixels().begin(), whole.reference.pixels().end(), pieces.pixels.data());
        pieces.painter.setPalette(whole.palette.data(), static_cast<int>(whole.palette.size()));
        pieces.painter.setColors(whole.reference.foreground, whole.reference.background);

        const RandomImage picture(TestFixture::randomFormat());
        const RandomImage mask(Image::Mask8);
        const Rect rect = randomRect(60);
        const auto draw = [&](Engine::Painter& painter) {
            painter.fill(rect);
            painter.drawImage(picture.image, 1, 2, rect);
            painter.drawMaskHalo(mask.image, 0, 0, rect, 2);
        };
        whole.target.painter.resetClip();
        draw(whole.target.painter);
        const auto x = static_cast<std::int16_t>(between(0, 60));
        const auto y = static_cast<std::int16_t>(between(0, 60));
        for (const Rect piece : {Rect{0, 0, x, y}, Rect{x, 0, 60, y}, Rect{0, y, x, 60}, Rect{x, y, 60, 60}}) {
            pieces.painter.setClip(piece);
            draw(pieces.painter);
        }
        ASSERT_TRUE(pieces.pixels == whole.target.pixels) << "round " << round << ", divided at " << x << ", " << y;
    }
}
