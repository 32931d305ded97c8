// The painter against pixman, wmemset and memcpy: the same work on the same buffers in the same run, and at the end the
// ratio of the medians. Run it without arguments for the table; benchmark's own flags are understood.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"

namespace {

constexpr int width = 240;
constexpr int height = 400;
constexpr int smallWidth = 150;  // 1.6 times this is the screen
constexpr int smallHeight = 250;
constexpr Engine::Color opaque = 0xff3366cc;
constexpr Engine::Color glassy = 0x803366cc;

static_assert(sizeof(wchar_t) == 4);

/// Everything that both sides draw with.
struct Bench {
    std::vector<std::uint32_t> screen = randomWords(width * height);
    std::vector<std::uint32_t> argb = randomWords(width * height);
    std::vector<std::uint32_t> solidArgb = withAlpha(argb);
    std::vector<std::uint8_t> mask = randomBytes(width * height);
    Engine::Framebuffer<unsigned int> painter{width, height, 8, screen.data(), 0};

    pixman_image_t* target = pixmanOver(screen.data(), PIXMAN_a8r8g8b8, width, height, 4);
    pixman_image_t* glass = solid(glassy);
    pixman_image_t* paint = solid(opaque);
    pixman_image_t* coverage = pixmanOver(mask.data(), PIXMAN_a8, width, height, 1);
    pixman_image_t* glyphCoverage = pixmanOver(mask.data(), PIXMAN_a8, 12, 16, 1);
    pixman_image_t* iconCoverage = pixmanOver(mask.data(), PIXMAN_a8, 20, 20, 1);
    pixman_image_t* picture = pixmanOver(argb.data(), PIXMAN_a8r8g8b8, width, height, 4);
    pixman_image_t* wide = pixmanOver(argb.data(), PIXMAN_a8r8g8b8, 200, 20, 4);
    pixman_image_t* scaled = scaledUp(argb);
    pixman_image_t* scaledSolid = scaledUp(solidArgb);

    static std::vector<std::uint32_t> randomWords(std::size_t size) {
        std::mt19937 random(1);
        std::vector<std::uint32_t> words(size);
        for (auto& word : words) word = static_cast<std::uint32_t>(random());
        return words;
    }
    static std::vector<std::uint8_t> randomBytes(std::size_t size) {
        std::mt19937 random(2);
        std::vector<std::uint8_t> bytes(size);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        return bytes;
    }
    static std::vector<std::uint32_t> withAlpha(std::vector<std::uint32_t> words) {
        for (auto& word : words) word |= 0xff000000U;
        return words;
    }
    static pixman_image_t* pixmanOver(void* pixels, pixman_format_code_t format, int w, int h, int pixelSize) {
        // Rows of pixman lie on whole words; all widths here do.
        return pixman_image_create_bits(format, w, h, static_cast<std::uint32_t*>(pixels), w * pixelSize);
    }
    static pixman_image_t* solid(Engine::Color color) {
        const auto channel = [color](int shift) { return static_cast<std::uint16_t>(((color >> shift) & 255) * 257); };
        const auto premultiplied = [&](int shift) {
            return static_cast<std::uint16_t>(std::uint32_t{channel(shift)} * channel(24) / 65535);
        };
        const pixman_color_t value{premultiplied(16), premultiplied(8), premultiplied(0), channel(24)};
        return pixman_image_create_solid_fill(&value);
    }
    static pixman_image_t* scaledUp(std::vector<std::uint32_t>& pixels) {
        pixman_image_t* image = pixmanOver(pixels.data(), PIXMAN_a8r8g8b8, smallWidth, smallHeight, 4);
        pixman_transform_t transform;
        pixman_transform_init_scale(&transform, pixman_int_to_fixed(smallWidth) / width,
                                    pixman_int_to_fixed(smallHeight) / height);
        pixman_image_set_transform(image, &transform);
        pixman_image_set_filter(image, PIXMAN_FILTER_NEAREST, nullptr, 0);
        return image;
    }

    void composite(pixman_op_t op, pixman_image_t* source, pixman_image_t* cover, int x, int y, int w, int h) const {
        pixman_image_composite32(op, source, cover, target, 0, 0, 0, 0, x, y, w, h);
    }
    void fill(std::int16_t x, std::int16_t y, std::int16_t w, std::int16_t h, Engine::Color color) {
        painter.setColors(opaque, color);
        painter.fill({x, y, w, h});
    }
    void image(const void* pixels, Engine::Image::Format format, int w, int h, std::int16_t x, std::int16_t y) {
        const Engine::Image description{0, static_cast<unsigned>(w), static_cast<unsigned>(h), format, pixels};
        painter.setColors(opaque, opaque);
        painter.drawImage(description, 0, 0, {x, y, static_cast<std::int16_t>(w), static_cast<std::int16_t>(h)});
    }
    void scaledImage(const std::vector<std::uint32_t>& pixels) {
        const Engine::Image description{0, smallWidth, smallHeight, Engine::Image::Argb8888, pixels.data()};
        painter.drawImageScaled(description, {0, 0, smallWidth, smallHeight}, whole());
    }
    void copy() {
        const auto w = static_cast<unsigned>(painter.logicalWidth());
        const auto h = static_cast<unsigned>(painter.logicalHeight());
        painter.copyImage({0, w, h, Engine::Image::Argb8888, argb.data()}, 0, 0, whole());
    }
    Engine::Rect whole() const {
        return {0, 0, static_cast<std::int16_t>(painter.logicalWidth()),
                static_cast<std::int16_t>(painter.logicalHeight())};
    }
    void turn(int degrees) {
        painter.setRotationDegrees(degrees);
        painter.resetClip();
    }
};

using Work = std::function<void(Bench&)>;

struct Comparison {
    std::string name;
    std::string peer;
    double limit;
    Work ours;
    Work theirs;
    int rotation = 0;
};

void wordFill(Bench& bench, int rows) {
    std::wmemset(reinterpret_cast<wchar_t*>(bench.screen.data()), static_cast<wchar_t>(opaque),
                 static_cast<std::size_t>(width * rows));
}

std::vector<Comparison> comparisons() {
    using Engine::Image;
    return {
        {"opaque fill, full screen", "wmemset", 1.15, [](Bench& b) { b.fill(0, 0, width, height, opaque); },
         [](Bench& b) { wordFill(b, height); }},
        {"opaque fill, 240 x 61", "wmemset", 1.15, [](Bench& b) { b.fill(0, 0, width, 61, opaque); },
         [](Bench& b) { wordFill(b, 61); }},
        {"opaque fill, 20 x 20", "pixman", 0.5, [](Bench& b) { b.fill(110, 190, 20, 20, opaque); },
         [](Bench& b) { pixman_fill(b.screen.data(), width, 32, 110, 190, 20, 20, opaque); }},
        {"blended fill, full screen", "pixman", 0.4, [](Bench& b) { b.fill(0, 0, width, height, glassy); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.glass, nullptr, 0, 0, width, height); }},
        {"blended fill, 20 x 20", "pixman", 0.6, [](Bench& b) { b.fill(110, 190, 20, 20, glassy); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.glass, nullptr, 110, 190, 20, 20); }},
        {"mask, full screen", "pixman", 0.35,
         [](Bench& b) { b.image(b.mask.data(), Image::Mask8, width, height, 0, 0); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.paint, b.coverage, 0, 0, width, height); }},
        {"mask, 12 x 16", "pixman", 0.5, [](Bench& b) { b.image(b.mask.data(), Image::Mask8, 12, 16, 114, 192); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.paint, b.glyphCoverage, 114, 192, 12, 16); }},
        {"mask, 20 x 20", "pixman", 0.5, [](Bench& b) { b.image(b.mask.data(), Image::Mask8, 20, 20, 110, 190); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.paint, b.iconCoverage, 110, 190, 20, 20); }},
        {"alpha image, full screen", "pixman", 0.7,
         [](Bench& b) { b.image(b.argb.data(), Image::Argb8888, width, height, 0, 0); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.picture, nullptr, 0, 0, width, height); }},
        {"alpha image, 200 x 20", "pixman", 0.7,
         [](Bench& b) { b.image(b.argb.data(), Image::Argb8888, 200, 20, 20, 190); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.wide, nullptr, 20, 190, 200, 20); }},
        {"raw copy, full screen", "memcpy", 1.05, [](Bench& b) { b.copy(); },
         [](Bench& b) { std::memcpy(b.screen.data(), b.argb.data(), b.screen.size() * 4); }},
        {"scaled copy, 1.6 x", "pixman", 0.65, [](Bench& b) { b.scaledImage(b.solidArgb); },
         [](Bench& b) { b.composite(PIXMAN_OP_SRC, b.scaledSolid, nullptr, 0, 0, width, height); }},
        {"scaled alpha, 1.6 x", "pixman", 0.65, [](Bench& b) { b.scaledImage(b.argb); },
         [](Bench& b) { b.composite(PIXMAN_OP_OVER, b.scaled, nullptr, 0, 0, width, height); }},
    };
}

/// The same draws turned, in the middle of the screen so that half a turn lands on the same pixels, against the upright
/// ones. Full-screen pictures take the turned screen's size.
std::vector<Comparison> turnedComparisons() {
    using Engine::Image;
    const std::vector<std::pair<std::string, Work>> draws = {
        {"opaque fill, 20 x 20", [](Bench& b) { b.fill(110, 190, 20, 20, opaque); }},
        {"blended fill, 20 x 20", [](Bench& b) { b.fill(110, 190, 20, 20, glassy); }},
        {"mask, full screen",
         [](Bench& b) {
             b.image(b.mask.data(), Image::Mask8, b.painter.logicalWidth(), b.painter.logicalHeight(), 0, 0);
         }},
        {"mask, 12 x 16", [](Bench& b) { b.image(b.mask.data(), Image::Mask8, 12, 16, 114, 192); }},
        {"mask, 20 x 20", [](Bench& b) { b.image(b.mask.data(), Image::Mask8, 20, 20, 110, 190); }},
        {"alpha image, full screen",
         [](Bench& b) {
             b.image(b.argb.data(), Image::Argb8888, b.painter.logicalWidth(), b.painter.logicalHeight(), 0, 0);
         }},
        {"alpha image, 200 x 20", [](Bench& b) { b.image(b.argb.data(), Image::Argb8888, 200, 20, 20, 190); }},
        {"raw copy, full screen", [](Bench& b) { b.copy(); }},
        {"scaled copy, 1.6 x", [](Bench& b) { b.scaledImage(b.solidArgb); }},
        {"scaled alpha, 1.6 x", [](Bench& b) { b.scaledImage(b.argb); }},
    };
    std::vector<Comparison> all;
    for (const int rotation : {90, 180})
        for (const auto& [name, draw] : draws)
            all.push_back({name + ", at " + std::to_string(rotation), "ours at 0", rotation == 90 ? 2.5 : 1.2, draw,
                           draw, rotation});
    return all;
}

/// Keeps the medians beside what the console shows.
class MedianReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }

    std::map<std::string, double> medians;
};

void registerWork(const std::string& name, int rotation, const Work& work) {
    benchmark::RegisterBenchmark(name.c_str(), [rotation, work](benchmark::State& state) {
        static Bench bench;
        bench.turn(rotation);
        for (auto _ : state) {
            work(bench);
            benchmark::ClobberMemory();
        }
    });
}

void printTable(const std::vector<Comparison>& all, const std::map<std::string, double>& medians) {
    std::printf(
        "\n| operation | peer | ours, us | peer, us | ratio | at most |\n| --- | --- | --- | --- | --- | --- |\n");
    for (const Comparison& one : all) {
        const auto ours = medians.find(one.name + " / ours");
        const auto theirs = medians.find(one.name + " / peer");
        if (ours == medians.end() || theirs == medians.end()) continue;
        const double ratio = ours->second / theirs->second;
        std::printf("| %s | %s | %.3f | %.3f | %.2f%s | %.2f |\n", one.name.c_str(), one.peer.c_str(),
                    ours->second / 1000, theirs->second / 1000, ratio, ratio > one.limit ? " (over)" : "", one.limit);
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<Comparison> all = comparisons();
    for (auto& one : turnedComparisons()) all.push_back(std::move(one));
    for (const Comparison& one : all) {
        registerWork(one.name + " / ours", one.rotation, one.ours);
        registerWork(one.name + " / peer", 0, one.theirs);
    }

    std::vector<std::string> defaults = {argv[0], "--benchmark_repetitions=41", "--benchmark_min_time=0.004",
                                         "--benchmark_enable_random_interleaving=true",
                                         "--benchmark_report_aggregates_only=true"};
    std::vector<char*> arguments;
    for (auto& argument : defaults) arguments.push_back(argument.data());
    for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printTable(all, reporter.medians);
    return 0;
}
