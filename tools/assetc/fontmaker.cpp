#include "tools/assetc/fontmaker.h"

#include <algorithm>
#include <cstdio>

#include "tools/common/inputerror.h"
#include "tools/common/utf8.h"

namespace {

constexpr char32_t lineFeed = 10, space = 32, noBreakSpace = 0xA0;

std::string shown(char32_t code) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "U+%04X", static_cast<unsigned>(code));
    return "'" + encodeUtf8(code) + "' (" + hex + ")";
}

[[noreturn]] void refuse(const FontSpec& spec, char32_t code, const std::string& place, const std::string& why) {
    throw InputError(place, 0,
                     "font " + std::to_string(spec.index) + " cannot hold the character " + shown(code) + ": " + why);
}

// The place of the ink within a band of the atlas. Drawing adds the font's baseline to it.
int offsetInBand(const FontSpec& spec, const Glyph& glyph) {
    return glyph.top - spec.baseline;
}

// The ink that lies within the band, found row by row, then column by column.
class InkBox {
  public:
    InkBox(const FontSpec& spec, const Glyph& glyph)
        : glyph_(glyph),
          top_(std::max(0, -offsetInBand(spec, glyph))),
          bottom_(std::min(glyph.height, spec.lineHeight - offsetInBand(spec, glyph))),
          right_(glyph.width) {
        while (top_ < bottom_ && rowIsEmpty(top_)) ++top_;
        if (top_ >= bottom_) return;
        while (rowIsEmpty(bottom_ - 1)) --bottom_;
        while (columnIsEmpty(left_)) ++left_;
        while (columnIsEmpty(right_ - 1)) --right_;
    }

    Glyph cut() const {
        Glyph result;
        result.code = glyph_.code;
        result.advance = glyph_.advance;
        if (top_ >= bottom_) return result;
        result.top = glyph_.top + top_;
        result.bearing = glyph_.bearing + left_;
        result.width = right_ - left_;
        result.height = bottom_ - top_;
        for (int y = top_; y < bottom_; ++y)
            result.coverage.insert(result.coverage.end(), row(y) + left_, row(y) + right_);
        return result;
    }

  private:
    const std::uint8_t* row(int y) const {
        return glyph_.coverage.data() + static_cast<std::ptrdiff_t>(y) * glyph_.width;
    }
    bool rowIsEmpty(int y) const {
        return std::all_of(row(y), row(y) + glyph_.width, [](std::uint8_t value) { return value == 0; });
    }
    bool columnIsEmpty(int x) const {
        for (int y = top_; y < bottom_; ++y)
            if (row(y)[x]) return false;
        return true;
    }

    const Glyph& glyph_;
    int top_, bottom_, left_ = 0, right_;
};

Glyph emptyGlyph(char32_t code) {
    Glyph glyph;
    glyph.code = code;
    return glyph;
}

// How many rows all glyphs move down from the middle of the line, so that the fixed band holds them: plain letters
// whole with their descenders, and one row for the accents of capitals, which would take more than the figures can
// spare.
int shiftIntoBand(Rasterizer& rasterizer, const FontSpec& spec) {
    int below = 0, above = 0;
    for (char32_t code = 0x21; code < 0xDF; ++code) {
        const auto glyph = rasterizer.glyph(code);
        if (!glyph || glyph->height == 0) continue;
        if (code < 0x7F) below = std::max(below, offsetInBand(spec, *glyph) + glyph->height - spec.lineHeight);
        above = std::max(above, -offsetInBand(spec, *glyph));
    }
    return below > 0 ? -below : std::min(above, 1);
}

std::vector<Glyph> glyphsOf(Rasterizer& rasterizer, const FontSpec& spec, const NeededCodes& needed) {
    rasterizer.use(spec);
    const int shift = shiftIntoBand(rasterizer, spec);
    std::vector<Glyph> glyphs{rasterizer.replacement(), emptyGlyph(lineFeed)};
    glyphs.front().top += shift;
    for (const auto& [code, place] : needed) {
        if (code == 0 || code == lineFeed) continue;
        if (code >= fontCodeLimit) refuse(spec, code, place, "it lies above the range of the fonts");
        auto glyph = rasterizer.glyph(code);
        if (!glyph) refuse(spec, code, place, "none of the font files has it; use another character");
        if (glyph->height > spec.lineHeight) refuse(spec, code, place, "it is taller than a line");
        glyph->top += shift;
        // With the fixed heights a few accents reach beyond the band by a row or two; they are cut there.
        *glyph = InkBox(spec, *glyph).cut();
        if (glyph->width == 0 && code != space && code != noBreakSpace) refuse(spec, code, place, "it has no ink");
        glyphs.push_back(std::move(*glyph));
    }
    return glyphs;
}

struct Place {
    int x, band;
};

// Columns that stay empty behind a glyph. The edge of a halo looks as far around itself as it is wide, so a halo sees twice
// its width: 3 pixels do not reach the neighbour of a letter or digit, which the scales need, and 1 not that of an
// ideograph, of which there are too many for more.
int gapBehind(const Glyph& glyph) {
    if (glyph.width == 0) return 0;
    return glyph.code < 0x2E80 ? 6 : 2;
}

// Fills the bands from left to right in the order of the codes. Returns one place a glyph.
std::vector<Place> placesOf(const std::vector<Glyph>& glyphs, int& width, int& bands) {
    std::vector<Place> places;
    Place next{0, 0};
    width = 1;
    for (const Glyph& glyph : glyphs) {
        if (next.x + glyph.width > largestAtlasWidth) next = {0, next.band + 1};
        places.push_back(next);
        width = std::max(width, next.x + glyph.width);
        next.x += glyph.width + gapBehind(glyph);
    }
    bands = next.band + 1;
    return places;
}

void blit(FontData& font, const Glyph& glyph, int x, int y) {
    for (int row = 0; row < glyph.height; ++row)
        std::copy_n(glyph.coverage.begin() + row * glyph.width, glyph.width,
                    font.atlas.begin() + (y + row) * font.atlasWidth + x);
}

}  // namespace

FontData makeFont(Rasterizer& rasterizer, const FontSpec& spec, const NeededCodes& needed) {
    FontData font;
    font.spec = spec;
    const std::vector<Glyph> glyphs = glyphsOf(rasterizer, spec, needed);
    int bands = 0;
    const std::vector<Place> places = placesOf(glyphs, font.atlasWidth, bands);
    font.atlas.resize(static_cast<std::size_t>(font.atlasWidth) * static_cast<std::size_t>(bands * spec.lineHeight));
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const Glyph& glyph = glyphs[i];
        const int x = glyph.width ? places[i].x : 0;
        const int y = glyph.width ? places[i].band * spec.lineHeight + offsetInBand(spec, glyph) : 0;
        font.codes.push_back(static_cast<std::uint16_t>(glyph.code));
        font.bearings.push_back(static_cast<std::int16_t>(glyph.bearing));
        font.advances.push_back(static_cast<std::uint16_t>(glyph.advance));
        font.heights.push_back(static_cast<std::uint16_t>(glyph.height));
        font.widths.push_back(static_cast<std::uint16_t>(glyph.width));
        font.ys.push_back(static_cast<std::int16_t>(y));
        font.xs.push_back(static_cast<std::uint32_t>(x));
        blit(font, glyph, x, y);
        font.atlasHeight = std::max(font.atlasHeight, y + glyph.height);
    }
    font.atlas.resize(static_cast<std::size_t>(font.atlasWidth) * static_cast<std::size_t>(font.atlasHeight));
    return font;
}
