// Every set of row kernels against the plain one: the whole buffers are compared, so a write beside the target shows
// too.
#include "engine/src/raster/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include "engine/src/raster/pixel.h"

using namespace Engine::Raster;

namespace {

std::mt19937 randomWord(20);

/// Random values with many zeros and many that are all ones, on which shortcuts would depend.
template <typename S>
std::vector<S> randomPixels(std::size_t size) {
    std::vector<S> pixels(size);
    for (auto& pixel : pixels) {
        const auto kind = randomWord() % 4;
        pixel = static_cast<S>(kind == 0 ? 0U : kind == 1 ? 0xffffffffU : randomWord());
    }
    return pixels;
}

constexpr std::ptrdiff_t rowStep = 96;
constexpr std::ptrdiff_t maxRows = 3;
constexpr std::ptrdiff_t maxWidth = 70;
constexpr std::size_t bufferSize = rowStep * (maxRows + 2);

template <typename T>
class KernelSets : public testing::Test {
  public:
    /// Runs draw(kernels, target, step) with every set at every width and alignment and compares the results.
    template <typename Draw>
    void compare(Draw draw) {
        for (const Isa isa : {Isa::Sse2, Isa::Avx2, Isa::Neon}) {
            const Kernels<T>* kernels = kernelsOf<T>(isa);
            if (kernels == nullptr) continue;
            for (std::ptrdiff_t width = 0; width <= maxWidth; ++width)
                for (std::ptrdiff_t offset = 0; offset < std::ptrdiff_t(32 / sizeof(T)); ++offset)
                    compareOne(*kernels, width, offset, draw);
        }
    }

  private:
    template <typename Draw>
    void compareOne(const Kernels<T>& kernels, std::ptrdiff_t width, std::ptrdiff_t offset, Draw draw) {
        auto actual = randomPixels<T>(bufferSize);
        auto expected = actual;
        const auto rows = static_cast<std::ptrdiff_t>(1 + randomWord() % maxRows);
        const int step = randomWord() % 2 == 0 ? 1 : -1;
        const auto seed = randomWord();
        const auto run = [&](const Kernels<T>& set, std::vector<T>& buffer) {
            randomWord.seed(seed);
            draw(set, Target<T>{buffer.data() + rowStep / 2 + offset, rowStep, width, rows}, step);
        };
        run(*kernelsOf<T>(Isa::Scalar), expected);
        run(kernels, actual);
        ASSERT_EQ(actual, expected) << "width " << width << ", offset " << offset << ", step " << step;
    }
};

/// A source of random pixels at a random alignment.
template <typename S>
struct RandomSource {
    std::vector<S> pixels = randomPixels<S>(bufferSize);
    std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(randomWord() % 16);

    Source<S> walked(int step) const {
        const std::ptrdiff_t start = step == 1 ? 0 : maxWidth - 1;
        return {pixels.data() + offset + start, step, rowStep};
    }
};

using Depths = testing::Types<unsigned char, unsigned short, unsigned int>;
TYPED_TEST_SUITE(KernelSets, Depths);

constexpr bool hasColors(std::size_t size) {
    return size > 1;
}

}  // namespace

TYPED_TEST(KernelSets, FillLikeThePlainOne) {
    this->compare(
        [](const auto& set, const auto& target, int) { set.fill(target, static_cast<TypeParam>(randomWord())); });
}

TYPED_TEST(KernelSets, BlendLikeThePlainOne) {
    if (!hasColors(sizeof(TypeParam))) return;
    this->compare(
        [](const auto& set, const auto& target, int) { set.blend(target, randomPixels<Engine::Color>(1)[0]); });
}

TYPED_TEST(KernelSets, DrawMasksLikeThePlainOne) {
    this->compare([](const auto& set, const auto& target, int step) {
        const RandomSource<std::uint8_t> source;
        set.mask(target, source.walked(step), randomPixels<Engine::Color>(1)[0]);
        set.stamp(target, source.walked(-step), static_cast<TypeParam>(randomWord()));
    });
}

TYPED_TEST(KernelSets, DrawColorsLikeThePlainOne) {
    if (!hasColors(sizeof(TypeParam))) return;
    this->compare([](const auto& set, const auto& target, int step) {
        set.argb(target, RandomSource<std::uint32_t>().walked(step));
        set.fixed(target, RandomSource<std::uint16_t>().walked(step), Zero::Drawn);
        set.fixed(target, RandomSource<std::uint16_t>().walked(step), Zero::Skipped);
    });
}

TYPED_TEST(KernelSets, DrawIndicesAndCopyLikeThePlainOne) {
    this->compare([](const auto& set, const auto& target, int step) {
        const auto colors = randomPixels<Engine::Color>(100);
        set.copy(target, RandomSource<TypeParam>().walked(step));
        set.indexed(target, RandomSource<std::uint8_t>().walked(step), {colors.data(), 100}, Zero::Drawn);
        set.indexed(target, RandomSource<std::uint8_t>().walked(step), {colors.data(), 100}, Zero::Skipped);
    });
}

TYPED_TEST(KernelSets, TurnLikeThePlainOne) {
    const auto pixels = randomPixels<TypeParam>(rowStep * 40);
    for (const Isa isa : {Isa::Sse2, Isa::Avx2, Isa::Neon}) {
        const auto* set = movesOf<TypeParam>(isa);
        if (set == nullptr) continue;
        for (int round = 0; round < 2000; ++round) {
            const auto width = static_cast<std::ptrdiff_t>(randomWord() % 38);
            const auto rows = static_cast<std::ptrdiff_t>(randomWord() % 38);
            const std::ptrdiff_t step = randomWord() % 2 == 0 ? rowStep : -rowStep;
            const std::ptrdiff_t across = randomWord() % 2 == 0 ? 1 : -1;
            const std::ptrdiff_t first = (step > 0 ? 0 : 38 * rowStep) + (across > 0 ? 0 : 40);
            const Source<TypeParam> source{pixels.data() + first, step, across};
            std::vector<TypeParam> expected(40 * 41, 77);
            std::vector<TypeParam> actual = expected;
            movesOf<TypeParam>(Isa::Scalar)->turn(expected.data() + 1, 41, source, width, rows);
            set->turn(actual.data() + 1, 41, source, width, rows);
            ASSERT_EQ(actual, expected) << width << " x " << rows << ", steps " << step << " and " << across;
        }
    }
}

TYPED_TEST(KernelSets, PickWhatIsPlanned) {
    for (const Isa isa : {Isa::Scalar, Isa::Sse2, Isa::Avx2, Isa::Neon}) {
        const auto* set = movesOf<TypeParam>(isa);
        if (set == nullptr) continue;
        for (int round = 0; round < 2000; ++round) {
            // Exactly as long as it is said to be: a read beyond it is for the sanitizers to find.
            const auto row = randomPixels<TypeParam>(1 + randomWord() % 60);
            std::vector<std::int32_t> places(randomWord() % 70);
            const auto reach = randomWord() % 2 == 0 ? row.size() : std::min<std::size_t>(row.size(), 20);
            for (auto& place : places) place = static_cast<std::int32_t>(randomWord() % reach);
            std::sort(places.begin(), places.end());
            if (randomWord() % 2 == 0) std::reverse(places.begin(), places.end());
            PickPlan plan;
            plan.width = static_cast<std::int32_t>(places.size());
            std::copy(places.begin(), places.end(), plan.places);
            plan.settle(static_cast<std::ptrdiff_t>(row.size()));
            std::vector<TypeParam> expected(places.size() + 2, 77);
            auto actual = expected;
            for (std::size_t i = 0; i < places.size(); ++i) expected[i + 1] = row[static_cast<std::size_t>(places[i])];
            set->pick(actual.data() + 1, row.data(), plan);
            ASSERT_EQ(actual, expected);
        }
    }
}

TEST(Division, IsExactForEveryProduct) {
    for (unsigned value = 0; value <= 255 * 255; ++value)
        ASSERT_EQ(divide255(static_cast<std::uint16_t>(value)), value / 255) << value;
}

TEST(KernelSetsOf, TheMachineAreComplete) {
    EXPECT_NE(kernelsOf<unsigned int>(bestIsa()), nullptr);
    EXPECT_NE(movesOf<unsigned char>(bestIsa()), nullptr);
}

/// All products of the vector mixers, which the random rows cannot cover: source, target and weight from 0 to 255.
TEST(Mixing, IsExactForAllChannelsAndWeights) {
    std::vector<std::uint32_t> targets(256), actual(256), expected(256);
    std::vector<std::uint8_t> weights(256);
    for (std::uint32_t value = 0; value < 256; ++value) targets[value] = value * 0x01010101U;
    for (std::uint32_t weight = 0; weight < 256; ++weight) {
        std::fill(weights.begin(), weights.end(), static_cast<std::uint8_t>(weight));
        for (std::uint32_t channel = 0; channel < 256; ++channel) {
            const std::uint32_t color = channel * 0x010101U | weight << 24;
            for (std::size_t i = 0; i < 256; ++i) {
                const auto value = static_cast<std::uint32_t>(i);
                expected[i] = value << 24 | 0x010101U * ((channel * weight + value * (255 - weight)) / 255);
            }
            for (const Isa isa : {Isa::Scalar, Isa::Sse2, Isa::Avx2, Isa::Neon}) {
                const auto* set = kernelsOf<std::uint32_t>(isa);
                if (set == nullptr) continue;
                actual = targets;
                set->mask({actual.data(), 256, 256, 1}, {weights.data(), 1, 256}, color);
                ASSERT_TRUE(actual == expected) << "mask of " << channel << " at " << weight;
                actual = targets;
                set->blend({actual.data(), 256, 256, 1}, color);
                ASSERT_TRUE(actual == expected) << "blend of " << channel << " at " << weight;
            }
        }
    }
}
