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

// Ink that leaves the band by a row is cut: with the fixed heights a few accents and strokes touch the edge.
void cutToBand(const FontSpec& spec, Glyph& glyph) {
    const int above = std::max(0, -offsetInBand(spec, glyph));
    const int below = std::max(0, offsetInBand(spec, glyph) + glyph.height - spec.lineHeight);
    const auto row = [&](int rows) { return static_cast<std::ptrdiff_t>(rows) * glyph.width; };
    glyph.coverage.erase(glyph.coverage.end() - row(below), glyph.coverage.end());
    glyph.coverage.erase(glyph.coverage.begin(), glyph.coverage.begin() + row(above));
    glyph.top += above;
    glyph.height -= above + below;
}

Glyph emptyGlyph(char32_t code) {
    Glyph glyph;
    glyph.code = code;
    return glyph;
}

std::vector<Glyph> glyphsOf(Rasterizer& rasterizer, const FontSpec& spec, const NeededCodes& needed) {
    rasterizer.use(spec);
    std::vector<Glyph> glyphs{rasterizer.replacement(), emptyGlyph(lineFeed)};
    for (const auto& [code, place] : needed) {
        if (code == 0 || code == lineFeed) continue;
        if (code >= fontCodeLimit) refuse(spec, code, place, "it lies above the range of the fonts");
        auto glyph = rasterizer.glyph(code);
        if (!glyph) refuse(spec, code, place, "none of the font files has it; use another character");
        if (glyph->height > spec.lineHeight) refuse(spec, code, place, "it is taller than a line");
        cutToBand(spec, *glyph);
        if (glyph->width == 0 && code != space && code != noBreakSpace) refuse(spec, code, place, "it has no ink");
        glyphs.push_back(std::move(*glyph));
    }
    return glyphs;
}

struct Place {
    int x, band;
};

// Fills the bands from left to right in the order of the codes. Returns one place a glyph.
std::vector<Place> placesOf(const std::vector<Glyph>& glyphs, int& width, int& bands) {
    std::vector<Place> places;
    Place next{0, 0};
    width = 1;
    for (const Glyph& glyph : glyphs) {
        if (next.x + glyph.width > largestAtlasWidth) next = {0, next.band + 1};
        places.push_back(next);
        next.x += glyph.width;
        width = std::max(width, next.x);
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
