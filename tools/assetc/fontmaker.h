#pragma once

#include <cstdint>
#include <vector>

#include "tools/assetc/fontspec.h"
#include "tools/assetc/rasterizer.h"

/// A finished font: the tables of its record, one entry a glyph, and the atlas.
struct FontData {
    FontSpec spec;
    std::vector<std::uint16_t> codes;  ///< strictly ascending; 0, the replacement, comes first
    std::vector<std::int16_t> bearings;
    std::vector<std::uint16_t> advances, heights, widths;
    std::vector<std::int16_t> ys;
    std::vector<std::uint32_t> xs;
    int atlasWidth = 0;
    int atlasHeight = 0;
    std::vector<std::uint8_t> atlas;  ///< coverage, rows from the top, atlasWidth bytes each

    std::size_t glyphCount() const { return codes.size(); }
};

/// Codes at or above it have no glyph, in no font.
inline constexpr std::uint32_t fontCodeLimit = 0xFF20;
inline constexpr int largestAtlasWidth = 2048;

/// Makes one font with every needed code. Throws InputError if a code has no glyph, or if its ink does not lie within
/// the band of the atlas that `spec` gives it; the message names the place that needs it.
FontData makeFont(Rasterizer& rasterizer, const FontSpec& spec, const NeededCodes& needed);
