#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/assetc/fontspec.h"

/// One glyph as it stands in a line. Its bitmap may be empty.
struct Glyph {
    char32_t code = 0;
    int top = 0;      ///< pixels from the top of the line to the top of the bitmap
    int bearing = 0;  ///< pixels from the pen to the left of the bitmap
    int advance = 0;  ///< pixels
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;  ///< width * height bytes
};

/// Turns code points into glyphs of one font with FreeType. Letters come from the font's own face, ideographs and signs
/// that it lacks from two others. Every face hangs on one rule: the middle of its guide character (a capital, an
/// ideograph) lies on the middle of the line.
class Rasterizer {
  public:
    /// Throws InputError if a face is missing or is no font.
    explicit Rasterizer(const std::filesystem::path& fontFolder);
    ~Rasterizer();
    Rasterizer(const Rasterizer&) = delete;
    Rasterizer& operator=(const Rasterizer&) = delete;

    void use(const FontSpec& spec);
    /// Nothing if no face has the code.
    std::optional<Glyph> glyph(char32_t code);
    /// A hollow box of a capital's height: what an unknown character is shown as. Its code is 0.
    Glyph replacement();

  private:
    struct Source {
        FT_Face face = nullptr;
        int baseline = 0;  ///< pixels from the top of the line
        bool bold = false;
    };

    FT_Face open(const std::string& file);
    Source source(const std::string& file, int size, char32_t guide);
    const Source* sourceOf(char32_t code, FT_UInt& index) const;

    std::filesystem::path folder_;
    FT_Library library_ = nullptr;
    std::map<std::string, FT_Face> faces_;
    FontSpec spec_;
    Source letters_, ideographs_, signs_;
    int capitalHeight_ = 0;
};
