#pragma once

#include <cstdint>

#include "embedded-gui-engine/image.h"

namespace Engine {

/// A font as the layout sees it: select a glyph, then ask. The selected glyph is state of the font object, which all
/// widgets share, so every reader selects before it asks.
class Font {
  public:
    /// Tells fonts apart in the keys of cached glyphs.
    std::uint16_t id() const { return id_; }

    /// Called whenever a widget makes this font current.
    virtual void prepare() = 0;
    /// Finds `code` and selects it; the result is its index, 0 being the replacement glyph. `load` is ignored by
    /// fonts that hold all their glyphs.
    virtual std::uint32_t selectGlyph(std::uint32_t code, bool load) = 0;
    virtual std::uint16_t lineHeight() const = 0;
    virtual std::uint16_t advance() const = 0;
    virtual std::uint16_t digitWidth() const = 0;
    virtual std::int16_t baseline() const = 0;
    virtual void atlas(Image& image) const = 0;
    virtual std::int16_t bearing() const = 0;
    virtual std::int16_t atlasX() const = 0;
    virtual std::int16_t atlasY() const = 0;
    virtual std::uint16_t glyphWidth() const = 0;
    virtual std::uint16_t glyphHeight() const = 0;
    virtual std::int16_t kerning() const = 0;

  protected:
    constexpr explicit Font(std::uint16_t id = 0) : id_(id) {}
    ~Font() = default;

  private:
    std::uint16_t id_;
};

}  // namespace Engine
