// Arbitrary bytes as text in arbitrary rectangles, under every setting of the painter.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/pregeneratedfont.h"

namespace {

using Engine::Framebuffer;
using Engine::Painter;
using Engine::Rect;
using Engine::TextLine;

constexpr int screenWidth = 60;
constexpr int screenHeight = 40;
constexpr int glyphCount = 97;
constexpr int lineHeight = 9;
constexpr int atlasWidth = glyphCount * 6;

/// Glyph 0, a line feed and the printable ASCII characters, of differing widths, bearings and heights.
class FuzzFont {
  public:
    FuzzFont() : font_(record()) {}
    Engine::Font* font() { return &font_; }

  private:
    const Engine::FontRecord& record() {
        for (std::uint16_t i = 0; i < glyphCount; ++i) {
            codes_[i] = static_cast<std::uint16_t>(i < 2 ? i * 10 : i + 30);
            xs_[i] = i * 6U;
            ys_[i] = static_cast<std::int16_t>(i % 3);
            widths_[i] = static_cast<std::uint16_t>(i % 7);
            heights_[i] = static_cast<std::uint16_t>(i % 5 + 1);
            advances_[i] = static_cast<std::uint16_t>(i % 9);
            bearings_[i] = static_cast<std::int16_t>(i % 4 - 2);
        }
        atlas_.fill(0x90);
        record_ = {
            {static_cast<std::uint32_t>(atlas_.size()), atlasWidth, lineHeight, Engine::Image::Mask8, atlas_.data()},
            glyphCount,
            xs_.data(),
            ys_.data(),
            widths_.data(),
            heights_.data(),
            advances_.data(),
            bearings_.data(),
            0xFF20,
            codes_.data(),
            -1,
            5,
            lineHeight,
            3};
        return record_;
    }

    std::array<std::uint16_t, glyphCount> codes_, widths_, heights_, advances_;
    std::array<std::uint32_t, glyphCount> xs_;
    std::array<std::int16_t, glyphCount> ys_, bearings_;
    std::array<std::uint8_t, static_cast<std::size_t>(atlasWidth) * lineHeight> atlas_;
    Engine::FontRecord record_{};
    Engine::PreGeneratedFont font_;
};

class Reader {
  public:
    Reader(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
    std::uint8_t byte() { return at_ < end_ ? *at_++ : std::uint8_t{0}; }
    /// Mostly near the screen, sometimes anywhere.
    std::int16_t coordinate() {
        const int choice = byte();
        const int low = byte();
        return static_cast<std::int16_t>(choice < 200 ? low - 64 : choice << 8 | low);
    }
    std::string rest() { return {reinterpret_cast<const char*>(at_), static_cast<std::size_t>(end_ - at_)}; }

  private:
    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

void require(bool condition) {
    if (!condition) std::abort();
}

void checkLines(const std::vector<TextLine>& lines, const std::string& text) {
    require(!lines.empty() && lines.size() <= text.size() + 1);
    std::int32_t position = 0;
    for (const TextLine& line : lines) {
        require(line.byteCount >= 0 && line.byteStart >= position);
        position = line.byteStart + line.byteCount;
        require(position <= static_cast<std::int32_t>(std::strlen(text.c_str())));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FuzzFont font;
    static std::vector<unsigned int> pixels(static_cast<std::size_t>(screenWidth) * screenHeight);
    Reader reader(data, size);
    const std::uint8_t settings = reader.byte();
    const std::uint8_t aligns = reader.byte();
    Framebuffer<unsigned int> painter(screenWidth, screenHeight, 8, pixels.data(), settings & 3U);
    painter.setFont(font.font());
    painter.setWrap((settings & 4U) != 0);
    painter.setTabularDigits((settings & 8U) != 0);
    painter.setEllipsis(settings >> 4 & 3U);
    painter.setHaloRadius(settings >> 6);
    painter.setAlign(static_cast<Painter::Align>(aligns & 3U), static_cast<Painter::Align>(aligns >> 2 & 3U));
    painter.setForeground(0xFFFFFFFF);
    const Rect rect{reader.coordinate(), reader.coordinate(), reader.coordinate(), reader.coordinate()};
    const int scrollX = reader.coordinate();
    const int scrollY = reader.coordinate();
    const int maxChars = (aligns & 0x80U) != 0 ? reader.byte() : -1;
    const std::string text = reader.rest();

    const auto lines = painter.layoutText(text.c_str(), rect, maxChars);
    checkLines(lines, text);
    int width = 0;
    int height = 0;
    painter.measureText(text.c_str(), rect, &width, &height, maxChars);
    require(height == static_cast<int>(lines.size()) * lineHeight);
    for (const TextLine& line : lines) require(line.width <= width);
    Rect bounds;
    painter.textBounds(text.c_str(), rect, bounds, maxChars);
    painter.drawText(text.c_str(), rect, scrollX, scrollY, maxChars);
    return 0;
}
