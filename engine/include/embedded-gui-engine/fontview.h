#pragma once

#include "embedded-gui-engine/pregeneratedfont.h"

namespace Engine {

/// A font as text operations ask it, some ten questions a character: without virtual calls when it is a
/// PreGeneratedFont. Made anew for each operation; the font is not owned.
class FontView {
  public:
    explicit FontView(Font& font) : font_(&font), tables_(dynamic_cast<PreGeneratedFont*>(&font)) {}

    void select(std::uint32_t code, bool load) {
        tables_ != nullptr ? tables_->selectGlyph(code, load) : font_->selectGlyph(code, load);
    }
    int lineHeight() const { return tables_ != nullptr ? tables_->lineHeight() : font_->lineHeight(); }
    int advance() const { return tables_ != nullptr ? tables_->advance() : font_->advance(); }
    int digitWidth() const { return tables_ != nullptr ? tables_->digitWidth() : font_->digitWidth(); }
    int baseline() const { return tables_ != nullptr ? tables_->baseline() : font_->baseline(); }
    int bearing() const { return tables_ != nullptr ? tables_->bearing() : font_->bearing(); }
    std::int16_t atlasX() const { return tables_ != nullptr ? tables_->atlasX() : font_->atlasX(); }
    std::int16_t atlasY() const { return tables_ != nullptr ? tables_->atlasY() : font_->atlasY(); }
    int glyphWidth() const { return tables_ != nullptr ? tables_->glyphWidth() : font_->glyphWidth(); }
    int glyphHeight() const { return tables_ != nullptr ? tables_->glyphHeight() : font_->glyphHeight(); }
    int kerning() const { return tables_ != nullptr ? tables_->kerning() : font_->kerning(); }
    Image atlas() const {
        Image image;
        font_->atlas(image);
        return image;
    }
    /// Key of a glyph in a target's cache.
    std::uint32_t keyOf(std::uint32_t code) const { return code | static_cast<std::uint32_t>(font_->id()) << 24; }

    /// Distance of the selected glyph's ink from the top of the line.
    int inkTop() const {
        const int height = lineHeight();
        return baseline() + (height != 0 ? atlasY() % height : atlasY());
    }
    /// Advance of the selected glyph, which is that of `code`: digits may take a cell of one width.
    int advanceOf(std::uint32_t code, bool tabularDigits) const {
        return tabularDigits && isDigit(code) ? digitWidth() : advance();
    }
    static bool isDigit(std::uint32_t code) { return code >= '0' && code <= '9'; }

  private:
    Font* font_;
    PreGeneratedFont* tables_;
};

}  // namespace Engine
