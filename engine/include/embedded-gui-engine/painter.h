#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/font.h"
#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/rect.h"

namespace Engine {

class Surface;
struct RingSector;

/// One line of laid out text.
struct TextLine {
    std::int32_t width = 0;   ///< pixels
    std::int32_t top = 0;     ///< of the ink, from the line's top
    std::int32_t bottom = 0;  ///< of the ink, from the line's top
    std::int32_t byteCount = 0;
    std::int32_t byteStart = 0;
};

/// A part of an image and the place where it goes, unscaled.
struct ImagePart {
    Rect place;
    std::int16_t srcX = 0;
    std::int16_t srcY = 0;
    std::uint32_t key = 0;  ///< as in drawImage
};

/// The drawing interface that widgets see, with the drawing state. Coordinates are logical: rotation lies below.
class Painter {
  public:
    enum class Align : std::uint8_t { Start = 0, Centre = 1, End = 2 };

    /// The part of the state that an operation may change and put back whole.
    struct Style {
        bool wrap = false;
        Align horizontalAlign = Align::Start;
        Align verticalAlign = Align::Start;
        Color foreground = 0;
        Color background = 0;
        std::uint32_t ellipsis = 0;
    };

    virtual ~Painter() = default;
    /// A painter of the same type, size, sample depth and rotation over fresh memory; contents undefined. The caller
    /// owns it.
    virtual Painter* clone() const = 0;
    virtual bool supportsDrawing() const = 0;
    virtual void beginPaint() = 0;
    virtual void endPaint() = 0;
    virtual void reserved6() = 0;
    virtual void reserved7() = 0;
    /// Angles are tenths of a degree: 0 points right, growing clockwise on the screen. Does not honour rotation.
    virtual void drawRingSector(RingSector& ring, int cx, int cy, int angleA, int angleB) = 0;
    /// Moves `inner` inside `outer` by the two alignments in force.
    virtual void alignRect(Rect& inner, const Rect& outer) const = 0;
    virtual void drawImage(const Image& image, int srcX, int srcY, Rect dst, std::uint32_t key = 0) = 0;
    virtual void copyImage(const Image& image, int srcX, int srcY, Rect dst) = 0;
    virtual void drawImageScaled(const Image& image, Rect src, Rect dst) = 0;
    virtual void drawMaskHalo(const Image& image, int srcX, int srcY, Rect dst, int radius) = 0;
    virtual void fill(Rect rect) = 0;
    virtual void clear() = 0;
    /// Unblended fill; answers whether anything is left after clipping.
    virtual bool erase(Rect rect) = 0;
    virtual void setPalette(const Color* colors, int count) = 0;
    virtual int logicalWidth() const = 0;
    virtual int logicalHeight() const = 0;
    /// Multiples of 90 are accepted, anything else answers false and changes nothing. The clip is not touched.
    virtual bool setRotationDegrees(int angle) = 0;
    virtual std::uint32_t rotationIndex() const = 0;
    virtual std::uint32_t sampleBits() const = 0;
    /// A surface of the same pixel type; the caller owns it.
    virtual Surface* createSurface(std::uint32_t width, std::uint32_t height) const = 0;
    virtual void describe(Image& image) const = 0;
    virtual bool isGlyphCached(std::uint32_t key) const = 0;
    virtual void setClip(Rect rect) = 0;
    virtual void resetClip() = 0;
    virtual void setColors(Color foreground, Color background) = 0;
    virtual void reserved29() = 0;
    virtual void fillRect(Rect rect, bool blend) = 0;

    // Clip stack.
    /// Unless `replace` is set, the rectangle is first cut down to the top of the stack.
    void pushClip(Rect rect, bool replace);
    void popClip();
    void resetClipStack();

    // State.
    Style style() const;
    void applyStyle(const Style& style);
    void setFont(Font* font) { font_ = font; }
    Font* font() const { return font_; }
    void setWrap(bool wrap) { wrap_ = wrap; }
    bool wrap() const { return wrap_; }
    void setTabularDigits(bool on) { tabularDigits_ = on; }
    bool tabularDigits() const { return tabularDigits_; }
    void setAlign(Align horizontal, Align vertical) {
        horizontalAlign_ = horizontal;
        verticalAlign_ = vertical;
    }
    Align horizontalAlign() const { return horizontalAlign_; }
    Align verticalAlign() const { return verticalAlign_; }
    /// Stores the colour and hands both to setColors, which alone changes what is drawn.
    void setForeground(Color color);
    void setBackground(Color color);
    Color foreground() const { return foreground_; }
    Color background() const { return background_; }
    void setEllipsis(std::uint32_t ellipsis) { ellipsis_ = ellipsis; }
    std::uint32_t ellipsis() const { return ellipsis_; }
    void setHaloRadius(std::int32_t radius) { haloRadius_ = radius; }
    std::int32_t haloRadius() const { return haloRadius_; }

    // Text, all with the state above. A null font draws nothing and measures zero. `maxChars` -1 means no limit.
    /// Draws the selected glyph of `code`; the result is its advance.
    int drawChar(std::uint32_t code, int x, int y);
    std::vector<TextLine> layoutText(const char* text, Rect rect, int maxChars) const;
    /// The result is the pen's x after the last character.
    int drawText(const char* text, Rect rect, int scrollX, int scrollY, int maxChars);
    /// Either output may be null.
    void measureText(const char* text, Rect rect, int* width, int* height, int maxChars) const;
    void textBounds(const char* text, Rect rect, Rect& outRect, int maxChars) const;

    /// Nine-slice drawing of a square image: corners as they are, edges and centre stretched.
    void drawImageNine(const Image& image, Rect rect);

  protected:
    Painter() = default;
    Painter(const Painter&) = default;
    Painter& operator=(const Painter&) = default;

    /// The same as drawImage for each part, in order: how a text hands over its glyphs. A target that can clip and
    /// choose its way once for all of them does.
    virtual void drawParts(const Image& image, std::span<const ImagePart> parts);

    Font* font_ = nullptr;
    bool wrap_ = false;
    bool tabularDigits_ = true;
    Align horizontalAlign_ = Align::Start;
    Align verticalAlign_ = Align::Start;
    Color foreground_ = 0;
    Color background_ = 0;
    std::uint32_t ellipsis_ = 0;
    std::int32_t haloRadius_ = 0;
    std::vector<Rect> clipStack_;

  private:
    class TextDrawer;
};

}  // namespace Engine
