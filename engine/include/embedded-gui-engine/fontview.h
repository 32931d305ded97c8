#pragma once

#include <cstdint>

#include "embedded-gui-engine/pregeneratedfont.h"

namespace Engine {

/// A font as text operations ask it, some ten questions a character: what is the same for all glyphs is asked once, and
/// a PreGeneratedFont is asked without virtual calls. Made anew for each operation; the font is not owned.
class FontView {
  public:
    struct Glyph {
        int width;
        int height;
        int bearing;
        int advance;
        std::int16_t atlasX;
        std::int16_t atlasY;
    };

    explicit FontView(Font& font)
        : font_(&font),
          tables_(dynamic_cast<PreGeneratedFont*>(&font)),
          lineHeight_(font.lineHeight()),
          baseline_(font.baseline()),
          digitWidth_(font.digitWidth()),
          reciprocal_(lineHeight_ != 0 ? (std::uint64_t{1} << 32) / lineHeight_ + 1 : 0) {}

    int lineHeight() const { return static_cast<int>(lineHeight_); }
    int digitWidth() const { return digitWidth_; }
    Image atlas() const {
        Image image;
        font_->atlas(image);
        return image;
    }
    /// Key of a glyph in a target's cache.
    std::uint32_t keyOf(std::uint32_t code) const { return code | static_cast<std::uint32_t>(font_->id()) << 24; }

    void select(std::uint32_t code, bool load) {
        if (tables_ != nullptr) {
            tables_->selectGlyph(code, load);
        } else {
            font_->selectGlyph(code, load);
        }
    }
    // Of the selected glyph.
    int kerning() const { return tables_ != nullptr ? tables_->kerning() : font_->kerning(); }
    /// `code` is the glyph's: digits may take a cell of one width.
    int advanceOf(std::uint32_t code, bool tabularDigits) const {
        if (tabularDigits && isDigit(code)) return digitWidth_;
        return tables_ != nullptr ? tables_->advance() : font_->advance();
    }
    Glyph glyph() const { return tables_ != nullptr ? read(*tables_) : read(*font_); }

    /// Distance of a glyph's ink from the top of the line, `baseline` and the glyph's place in its band of the atlas.
    int inkTop(std::int16_t atlasY) const {
        if (atlasY < 0 || lineHeight_ == 0) return baseline_ + (lineHeight_ != 0 ? atlasY % lineHeight() : atlasY);
        // The division by a product: exact, since both numbers are below 2^16.
        const auto band = static_cast<std::uint32_t>(static_cast<std::uint64_t>(atlasY) * reciprocal_ >> 32);
        return baseline_ + atlasY - static_cast<int>(band * lineHeight_);
    }
    static bool isDigit(std::uint32_t code) { return code - '0' < 10; }

  private:
    template <typename AnyFont>
    static Glyph read(const AnyFont& font) {
        return {font.glyphWidth(), font.glyphHeight(), font.bearing(), font.advance(), font.atlasX(), font.atlasY()};
    }

    Font* font_;
    PreGeneratedFont* tables_;
    std::uint32_t lineHeight_;
    int baseline_;
    int digitWidth_;
    std::uint64_t reciprocal_;
};

}  // namespace Engine
