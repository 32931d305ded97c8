// Text and a menu scene, drawn by the painter and by pixman with the same bitmaps at the same places. Each benchmark
// draws both sides in turn and reports the medians of the two and their ratio, so that a noisy machine harms both
// alike.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/utf8.h"
#include "model/assets.h"

namespace {

using Engine::Color;
using Engine::Image;
using Engine::Painter;
using Engine::Rect;

constexpr int screenWidth = 240;
constexpr int screenHeight = 400;
constexpr Color black = 0xFF000000;
constexpr Color white = 0xFFFFFFFF;
constexpr Color grey = 0xFF404040;

using Pixels = std::vector<unsigned int>;

Engine::PreGeneratedFont& rowFont() {
    return Assets::fonts[6];
}  // lines of 29 pixels
Engine::PreGeneratedFont& titleFont() {
    return Assets::fonts[3];
}  // lines of 29 pixels, larger letters

struct PixmanDelete {
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
    void operator()(pixman_glyph_cache_t* cache) const { pixman_glyph_cache_destroy(cache); }
};
using PixmanImage = std::unique_ptr<pixman_image_t, PixmanDelete>;

/// A glyph as pixman gets it: the bitmap's left top corner on the screen.
struct PlacedGlyph {
    std::uint32_t code;
    int x;
    int y;
};

/// Where the painter draws the glyphs of one line that begins at (x, y).
std::vector<PlacedGlyph> placeLine(Engine::PreGeneratedFont& font, const std::string& text, int x, int y) {
    std::vector<PlacedGlyph> placed;
    const char* at = text.c_str();
    while (const std::uint32_t code = Engine::decodeUtf8(at)) {
        font.selectGlyph(code, false);
        const bool digit = code >= '0' && code <= '9';
        const int offset = digit ? (font.digitWidth() - font.glyphWidth()) / 2 : font.bearing();
        if (font.glyphWidth() > 0 && font.glyphHeight() > 0)
            placed.push_back({code, x + offset, y + font.baseline() + font.atlasY() % font.lineHeight()});
        x += digit ? font.digitWidth() : font.advance();
    }
    return placed;
}

/// The other side: what a toolkit does with pixman, all glyphs in its cache.
class PixmanScreen {
  public:
    explicit PixmanScreen(Pixels& pixels)
        : screen_(pixman_image_create_bits(PIXMAN_x8r8g8b8, screenWidth, screenHeight, pixels.data(), screenWidth * 4)),
          cache_(pixman_glyph_cache_create()) {}

    void cacheFont(Engine::PreGeneratedFont& font) {
        pixman_glyph_cache_freeze(cache_.get());
        for (std::uint32_t i = 0; i < font.record().glyphCount; ++i) {
            const std::uint16_t code = font.record().codeTable[i];
            font.selectGlyph(code, false);
            if (font.glyphWidth() == 0 || font.glyphHeight() == 0) continue;
            const PixmanImage bitmap =
                copyMask(font.record().atlas, font.atlasX(), font.atlasY(), font.glyphWidth(), font.glyphHeight());
            pixman_glyph_cache_insert(cache_.get(), &font, key(code), 0, 0, bitmap.get());
        }
        pixman_glyph_cache_thaw(cache_.get());
    }

    void fill(Rect rect, Color color) {
        pixman_fill(reinterpret_cast<std::uint32_t*>(pixman_image_get_data(screen_.get())), screenWidth, 32, rect.x,
                    rect.y, rect.width, rect.height, color);
    }

    void drawGlyphs(Engine::PreGeneratedFont& font, const std::vector<PlacedGlyph>& placed, pixman_image_t* source) {
        glyphs_.clear();
        pixman_glyph_cache_freeze(cache_.get());
        for (const PlacedGlyph& glyph : placed)
            glyphs_.push_back({glyph.x, glyph.y, pixman_glyph_cache_lookup(cache_.get(), &font, key(glyph.code))});
        pixman_composite_glyphs_no_mask(PIXMAN_OP_OVER, source, screen_.get(), 0, 0, 0, 0, cache_.get(),
                                        static_cast<int>(glyphs_.size()), glyphs_.data());
        pixman_glyph_cache_thaw(cache_.get());
    }

    void drawMask(pixman_image_t* mask, int x, int y, pixman_image_t* source) {
        pixman_image_composite32(PIXMAN_OP_OVER, source, mask, screen_.get(), 0, 0, 0, 0, x, y,
                                 pixman_image_get_width(mask), pixman_image_get_height(mask));
    }

    static PixmanImage copyMask(const Image& image, int left, int top, int width, int height) {
        PixmanImage copy(pixman_image_create_bits(PIXMAN_a8, width, height, nullptr, 0));
        auto* const target = reinterpret_cast<std::uint8_t*>(pixman_image_get_data(copy.get()));
        const int stride = pixman_image_get_stride(copy.get());
        const auto* const source = static_cast<const std::uint8_t*>(image.pixels);
        for (int row = 0; row < height; ++row)
            std::copy_n(source + static_cast<std::size_t>(top + row) * image.width + left, width,
                        target + row * stride);
        return copy;
    }

    static PixmanImage solid(Color color) {
        const auto channel = [&](int shift) { return static_cast<std::uint16_t>((color >> shift & 0xFF) * 0x101); };
        const pixman_color_t value{channel(16), channel(8), channel(0), channel(24)};
        return PixmanImage(pixman_image_create_solid_fill(&value));
    }

  private:
    static void* key(std::uint32_t code) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(code)); }

    PixmanImage screen_;
    std::unique_ptr<pixman_glyph_cache_t, PixmanDelete> cache_;
    std::vector<pixman_glyph_t> glyphs_;
};

/// Both blends round, in different ways: a channel may differ by two.
bool alike(const Pixels& a, const Pixels& b) {
    for (std::size_t i = 0; i < a.size(); ++i)
        for (const int shift : {0, 8, 16})
            if (std::abs(static_cast<int>(a[i] >> shift & 0xFF) - static_cast<int>(b[i] >> shift & 0xFF)) > 2)
                return false;
    return true;
}

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <typename Draw>
double microseconds(Draw& draw) {
    const auto start = std::chrono::steady_clock::now();
    draw();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

template <typename Ours, typename Peer>
void race(benchmark::State& state, const Pixels& ourPixels, const Pixels& peerPixels, Ours ours, Peer peer) {
    ours();
    peer();
    if (!alike(ourPixels, peerPixels)) {
        state.SkipWithError("the two sides draw different pictures");
        return;
    }
    std::vector<double> ourTimes, peerTimes;
    for (auto _ : state) {
        ourTimes.push_back(microseconds(ours));
        peerTimes.push_back(microseconds(peer));
    }
    const double our = median(ourTimes);
    const double other = median(peerTimes);
    state.counters["ours_us"] = our;
    state.counters["pixman_us"] = other;
    state.counters["ratio"] = our / other;
}

/// 20 lines of 582 characters altogether.
std::vector<std::string> textLines() {
    const std::string words = "Focus distance 3.45 m, iris T2.8 1/3, zoom 35.0 mm; motor torque high, range 12 ";
    std::vector<std::string> lines;
    std::size_t at = 0;
    for (int i = 0; i < 20; ++i) {
        std::string line;
        for (int length = i < 2 ? 30 : 29; length > 0; --length) line += words[at++ % words.size()];
        lines.push_back(line);
    }
    return lines;
}

/// Each line is a text of its own, as labels are; `pitch` pixels apart.
void text(benchmark::State& state, Engine::PreGeneratedFont& font, int pitch) {
    Pixels ourPixels(static_cast<std::size_t>(screenWidth) * screenHeight, black);
    Pixels peerPixels = ourPixels;
    Engine::Framebuffer<unsigned int> painter(screenWidth, screenHeight, 8, ourPixels.data(), 0);
    painter.setFont(&font);
    painter.setForeground(white);
    PixmanScreen screen(peerPixels);
    screen.cacheFont(font);
    const PixmanImage ink = PixmanScreen::solid(white);

    const std::vector<std::string> lines = textLines();
    std::vector<std::vector<PlacedGlyph>> placed;
    int y = 0;
    for (const std::string& line : lines) {
        placed.push_back(placeLine(font, line, 0, y));
        y += pitch;
    }
    race(
        state, ourPixels, peerPixels,
        [&] {
            Rect rect{0, 0, screenWidth, static_cast<std::int16_t>(pitch)};
            for (const std::string& line : lines) {
                painter.drawText(line.c_str(), rect, 0, 0, -1);
                rect.y = static_cast<std::int16_t>(rect.y + pitch);
            }
        },
        [&] {
            for (const auto& line : placed) screen.drawGlyphs(font, line, ink.get());
        });
}
void text16(benchmark::State& state) {
    text(state, Assets::fonts[7], 20);
}
void text12(benchmark::State& state) {
    text(state, Assets::fonts[8], 16);
}
BENCHMARK(text16)->Unit(benchmark::kMicrosecond);
BENCHMARK(text12)->Unit(benchmark::kMicrosecond);

constexpr int rowHeight = 48;
constexpr int titleHeight = 40;
constexpr int highlightedRow = 2;
constexpr std::array<const char*, 6> rowTexts{"Calibration",      "Motors and rings", "Lens data",
                                              "Radio channel 12", "User buttons",     "Setup"};

/// The first icon of about the size of a row's.
const Image& rowIcon() {
    for (const Image& image : Assets::records.images)
        if (image.format == Image::Mask8 && image.width == 22 && image.height == 22) return image;
    return Assets::records.images[0];
}

Rect rowRect(int row) {
    return {0, static_cast<std::int16_t>(titleHeight + row * rowHeight), screenWidth, rowHeight};
}

void drawMenu(Painter& painter) {
    painter.setBackground(black);
    painter.fill({0, 0, screenWidth, screenHeight});
    painter.setForeground(white);
    painter.setFont(&titleFont());
    painter.setAlign(Painter::Align::Start, Painter::Align::Centre);
    painter.drawText("Main menu", {8, 0, screenWidth - 8, titleHeight}, 0, 0, -1);
    painter.setFont(&rowFont());
    const Image& icon = rowIcon();
    for (int row = 0; row < static_cast<int>(rowTexts.size()); ++row) {
        const Rect rect = rowRect(row);
        if (row == highlightedRow) {
            painter.setBackground(white);
            painter.fill(rect);
        }
        painter.setBackground(grey);
        painter.fill({rect.x, rect.y, rect.width, 1});
        painter.setForeground(row == highlightedRow ? black : white);
        painter.drawText(rowTexts[static_cast<std::size_t>(row)], {8, rect.y, 190, rect.height}, 0, 0, -1);
        painter.drawImage(icon, 0, 0,
                          {208, static_cast<std::int16_t>(rect.y + 13), static_cast<std::int16_t>(icon.width),
                           static_cast<std::int16_t>(icon.height)});
    }
}

/// The same scene for pixman, placed beforehand.
class PixmanMenu {
  public:
    explicit PixmanMenu(Pixels& pixels) : screen_(pixels) {
        screen_.cacheFont(titleFont());
        screen_.cacheFont(rowFont());
        const Image& icon = rowIcon();
        icon_ = PixmanScreen::copyMask(icon, 0, 0, static_cast<int>(icon.width), static_cast<int>(icon.height));
        title_ = placeLine(titleFont(), "Main menu", 8, (titleHeight - titleFont().lineHeight()) / 2);
        for (int row = 0; row < static_cast<int>(rowTexts.size()); ++row)
            rows_.push_back(placeLine(rowFont(), rowTexts[static_cast<std::size_t>(row)], 8,
                                      rowRect(row).y + (rowHeight - rowFont().lineHeight()) / 2));
    }

    void draw() {
        screen_.fill({0, 0, screenWidth, screenHeight}, black);
        screen_.drawGlyphs(titleFont(), title_, white_.get());
        for (int row = 0; row < static_cast<int>(rows_.size()); ++row) {
            const Rect rect = rowRect(row);
            pixman_image_t* const ink = row == highlightedRow ? black_.get() : white_.get();
            if (row == highlightedRow) screen_.fill(rect, white);
            screen_.fill({rect.x, rect.y, rect.width, 1}, grey);
            screen_.drawGlyphs(rowFont(), rows_[static_cast<std::size_t>(row)], ink);
            screen_.drawMask(icon_.get(), 208, rect.y + 13, ink);
        }
    }

  private:
    PixmanScreen screen_;
    PixmanImage icon_;
    PixmanImage white_ = PixmanScreen::solid(white);
    PixmanImage black_ = PixmanScreen::solid(black);
    std::vector<PlacedGlyph> title_;
    std::vector<std::vector<PlacedGlyph>> rows_;
};

void menu(benchmark::State& state) {
    Pixels ourPixels(static_cast<std::size_t>(screenWidth) * screenHeight);
    Pixels peerPixels(ourPixels.size());
    Engine::Framebuffer<unsigned int> painter(screenWidth, screenHeight, 8, ourPixels.data(), 0);
    PixmanMenu peer(peerPixels);
    race(
        state, ourPixels, peerPixels, [&] { drawMenu(painter); }, [&] { peer.draw(); });
}
BENCHMARK(menu)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
