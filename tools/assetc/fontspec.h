#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// What one font is made from. Line height, digit width and baseline are fixed: layouts depend on them.
struct FontSpec {
    int index = 0;
    int lineHeight = 0;  ///< pixels; also the height of one band of the atlas
    int digitWidth = 0;  ///< pixels; the cell of a digit in figures that must not jitter
    int baseline = 0;    ///< pixels that are added to a glyph's place in its band; may be negative
    int size = 0;        ///< pixels per em of letters
    int ideographSize = 0;
    bool boldIdeographs = false;
    std::string face;  ///< file of the letters, below the font folder
};

/// Code point to the place that needs it, for the message when no face has it.
using NeededCodes = std::map<char32_t, std::string>;

std::vector<FontSpec> readFontSpecs(const std::filesystem::path& table);
/// The codes that every font holds. Throws InputError for a range that is empty or not hexadecimal.
NeededCodes readBaseSet(const std::filesystem::path& table);
