#pragma once

#include <cstdint>

#include "embedded-gui-engine/font.h"
#include "embedded-gui-engine/image.h"

namespace Engine {

/// A font as constant data: an atlas of coverage samples and one table a metric, all tables indexed by glyph. Glyph 0
/// has the code 0 and is drawn for codes that the font lacks. A bitmap is cut to its ink; the atlas is stacked in bands
/// of `lineHeight` rows, and a glyph stands in its band at the height at which it stands in a line.
struct FontRecord {
    Image atlas;                        ///< Image::Mask8
    std::uint32_t glyphCount;           ///< at least 1
    const std::uint32_t* xTable;        ///< atlas x in the low 16 bits, the high ones are zero
    const std::int16_t* yTable;         ///< atlas y
    const std::uint16_t* widthTable;    ///< pixels of the bitmap
    const std::uint16_t* heightTable;   ///< pixels of the bitmap
    const std::uint16_t* advanceTable;  ///< pixels
    const std::int16_t* bearingTable;   ///< x of the bitmap, from the pen
    std::uint32_t codeLimit;            ///< codes at or above it have no glyph
    const std::uint16_t* codeTable;     ///< strictly ascending code points
    std::int16_t baseline;              ///< added to the line's top for every glyph; may be negative
    std::uint16_t digitWidth;           ///< advance of a digit under tabular digits
    std::uint16_t lineHeight;           ///< distance between lines, and height of one band of the atlas
    std::uint16_t id;
};

static_assert(sizeof(void*) != 4 || sizeof(FontRecord) == 64);

/// A font over a FontRecord. Needs no work at start; the record must outlive it and is not owned.
class PreGeneratedFont final : public Font {
  public:
    constexpr explicit PreGeneratedFont(const FontRecord& record) : Font(record.id), data_(&record) {}

    const FontRecord& record() const { return *data_; }

    void prepare() override {}
    std::uint32_t selectGlyph(std::uint32_t code, bool /*load*/) override { return selected_ = glyphIndex(code); }
    std::uint16_t lineHeight() const override { return data_->lineHeight; }
    std::uint16_t advance() const override { return data_->advanceTable[selected_]; }
    std::uint16_t digitWidth() const override { return data_->digitWidth; }
    std::int16_t baseline() const override { return data_->baseline; }
    void atlas(Image& image) const override { image = data_->atlas; }
    std::int16_t bearing() const override { return data_->bearingTable[selected_]; }
    std::int16_t atlasX() const override { return static_cast<std::int16_t>(data_->xTable[selected_]); }
    std::int16_t atlasY() const override { return data_->yTable[selected_]; }
    std::uint16_t glyphWidth() const override { return data_->widthTable[selected_]; }
    std::uint16_t glyphHeight() const override { return data_->heightTable[selected_]; }
    std::int16_t kerning() const override { return 0; }

    /// Index of the glyph of `code`, 0 when the font lacks it. Selects nothing.
    std::uint32_t glyphIndex(std::uint32_t code) const {
        // ASCII pays for one probe only.
        const std::uint32_t guess = code - asciiShift;
        if (guess < asciiGlyphs && guess < data_->glyphCount && data_->codeTable[guess] == code) return guess;
        return searchGlyph(code);
    }

  private:
    /// Where a code from the space on stands in a font whose first codes are 0, 10, 32, 33, 34 and so on: the index is
    /// the code less this. Fonts are made so; in any other the guess misses and the search decides.
    static constexpr std::uint32_t asciiShift = 30;
    static constexpr std::uint32_t asciiGlyphs = 128 - asciiShift;

    std::uint32_t searchGlyph(std::uint32_t code) const;

    const FontRecord* data_;
    std::uint32_t selected_ = 0;
};

}  // namespace Engine
