#include <array>
#include <span>

#include "embedded-gui-engine/fontview.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/textlayout.h"
#include "embedded-gui-engine/utf8.h"

namespace Engine {

namespace {

using Align = Painter::Align;

constexpr int dotCount = 3;

std::int16_t narrow(int value) {
    return static_cast<std::int16_t>(value);
}

bool fitsInt16(int value) {
    return narrow(value) == value;
}

/// y of the first of `lines` lines.
int firstLineTop(Rect rect, Align align, int lines, int lineHeight) {
    const int slack = rect.height - lines * lineHeight;
    if (align == Align::Centre) return rect.y + slack / 2;
    return align == Align::End ? rect.y + slack : rect.y;
}

/// x of a line. At the end it keeps one pixel clear.
int lineStart(Rect rect, Align align, int width) {
    const int slack = rect.width - width;
    if (align == Align::Centre) return rect.x + slack / 2;
    return align == Align::End ? rect.x + slack - 1 : rect.x;
}

/// The lines of a text whose number must be known before the first one is drawn. As many as nearly all texts have are kept;
/// longer texts are laid out once more from there, so that nothing is allocated.
class LineList {
  public:
    explicit LineList(const TextLayout& layout) : rest_(layout) {
        while (kept_ < lines_.size() && rest_.next(lines_[kept_])) ++kept_;
        TextLayout counter = rest_;
        for (TextLine line; counter.next(line);) ++beyond_;
    }

    int count() const { return static_cast<int>(kept_) + beyond_; }

    bool next(TextLine& line) {
        if (at_ == kept_) return rest_.next(line);
        line = lines_[at_++];
        return true;
    }

  private:
    std::array<TextLine, 8> lines_;
    std::size_t kept_ = 0;
    std::size_t at_ = 0;
    int beyond_ = 0;
    TextLayout rest_;
};

/// Where the selected glyph of `code` goes with the pen at (x, y). False when it has no ink, or lies so far out that
/// no surface reaches there.
[[gnu::always_inline]] inline bool placeGlyph(const FontView& font, std::uint32_t code, bool inCell, int x, int y,
                                              ImagePart& part) {
    const FontView::Glyph glyph = font.glyph();
    if (glyph.width == 0 || glyph.height == 0) return false;
    const int left = x + (inCell ? (font.digitWidth() - glyph.width) / 2 : glyph.bearing);
    const int top = y + font.inkTop(glyph.atlasY);
    if (!fitsInt16(left) || !fitsInt16(top)) return false;
    part = {{narrow(left), narrow(top), narrow(glyph.width), narrow(glyph.height)},
            glyph.atlasX,
            glyph.atlasY,
            font.keyOf(code)};
    return true;
}

}  // namespace

/// Draws the lines of one text. Glyphs are gathered and handed to the target in runs.
class Painter::TextDrawer {
  public:
    TextDrawer(Painter& painter, const FontView& font, Rect rect)
        : painter_(painter), font_(font), atlas_(font_.atlas()), tabularDigits_(painter.tabularDigits_), rect_(rect) {}
    TextDrawer(const TextDrawer&) = delete;
    TextDrawer& operator=(const TextDrawer&) = delete;
    ~TextDrawer() { flush(); }

    /// The result is the pen's x behind the line. `dots` is the width of the ellipsis in force, negative when it
    /// stands at the end, 0 for none.
    int drawLine(const char* at, const char* end, int dots, int x, int y) {
        pen_ = x;
        y_ = y;
        while (at < end) {
            const std::uint32_t code = decodeUtf8(at);
            if (code == 0 || !drawCharacter(code, dots)) break;
        }
        return pen_;
    }

  private:
    void select(std::uint32_t code) { font_.select(code, !painter_.isGlyphCached(font_.keyOf(code))); }

    void drawSelected(std::uint32_t code) {
        const bool inCell = tabularDigits_ && FontView::isDigit(code);
        if (placeGlyph(font_, code, inCell, pen_, y_, run_[runLength_]) && ++runLength_ == run_.size()) flush();
        pen_ += font_.advanceOf(code, tabularDigits_);
    }

    void drawDots(int x) {
        select(fullStop);
        pen_ = x;
        for (int i = 0; i < dotCount; ++i) drawSelected(fullStop);
    }

    /// False when the line ends here.
    bool drawCharacter(std::uint32_t code, int dots) {
        select(code);
        pen_ += font_.kerning();
        if (dots == 0) {
            drawSelected(code);
            return true;
        }
        const int behind = pen_ + font_.advanceOf(code, tabularDigits_);
        const int limit = rect_.x + dots;
        if (limit > behind) {
            pen_ = behind;
        } else if (limit > pen_) {
            drawDots(behind - dots);
        } else if (rect_.x + rect_.width + dots <= behind) {
            drawDots(pen_);
            return false;
        } else {
            drawSelected(code);
        }
        return true;
    }

    void flush() {
        const std::span<const ImagePart> run(run_.data(), runLength_);
        if (painter_.haloRadius_ < 1) {
            painter_.drawParts(atlas_, run);
        } else {
            for (const ImagePart& part : run)
                painter_.drawMaskHalo(atlas_, part.srcX, part.srcY, part.place, painter_.haloRadius_);
        }
        runLength_ = 0;
    }

    Painter& painter_;
    FontView font_;
    Image atlas_;
    bool tabularDigits_;
    Rect rect_;
    int pen_ = 0;
    int y_ = 0;
    std::size_t runLength_ = 0;
    std::array<ImagePart, 32> run_;
};

void Painter::drawParts(const Image& image, std::span<const ImagePart> parts) {
    for (const ImagePart& part : parts) drawImage(image, part.srcX, part.srcY, part.place, part.key);
}

int Painter::drawChar(std::uint32_t code, int x, int y) {
    if (font_ == nullptr) return 0;
    const FontView font(*font_);
    if (ImagePart part; placeGlyph(font, code, tabularDigits_ && FontView::isDigit(code), x, y, part)) {
        if (haloRadius_ < 1) {
            drawImage(font.atlas(), part.srcX, part.srcY, part.place, part.key);
        } else {
            drawMaskHalo(font.atlas(), part.srcX, part.srcY, part.place, haloRadius_);
        }
    }
    return font.advanceOf(code, tabularDigits_);
}

std::vector<TextLine> Painter::layoutText(const char* text, Rect rect, int maxChars) const {
    std::vector<TextLine> lines;
    if (font_ == nullptr) return lines;
    TextLayout layout(FontView(*font_), text, {wrap_, rect.width, tabularDigits_, maxChars});
    for (TextLine line; layout.next(line);) lines.push_back(line);
    return lines;
}

int Painter::drawText(const char* text, Rect rect, int scrollX, int scrollY, int maxChars) {
    if (font_ == nullptr) return rect.x;
    if (text == nullptr) text = "";
    FontView font(*font_);
    LineList lines(TextLayout(font, text, {wrap_, rect.width, tabularDigits_, maxChars, false}));

    int dots = 0;
    if (ellipsis_ != 0) {
        font.select(fullStop, false);
        dots = dotCount * font.advanceOf(fullStop, false) * (ellipsis_ == 1 ? -1 : 1);
    }
    const int lineHeight = font.lineHeight();
    int y = firstLineTop(rect, verticalAlign_, lines.count(), lineHeight) + scrollY;
    int pen = rect.x;
    TextDrawer drawer(*this, font, rect);
    for (TextLine line; lines.next(line); y += lineHeight) {
        const bool tooLong = dots != 0 && line.width > rect.width;
        const Align align = !tooLong ? horizontalAlign_ : Align::Start;
        pen = tooLong && dots > 0 ? rect.x + rect.width - line.width : lineStart(rect, align, line.width);
        const char* const begin = text + line.byteStart;
        pen = drawer.drawLine(begin, begin + line.byteCount, tooLong ? dots : 0, pen + scrollX, y);
    }
    return pen;
}

void Painter::measureText(const char* text, Rect rect, int* width, int* height, int maxChars) const {
    int widest = 0;
    int lines = 0;
    if (font_ != nullptr) {
        TextLayout layout(FontView(*font_), text, {wrap_, rect.width, tabularDigits_, maxChars, false});
        for (TextLine line; layout.next(line); ++lines) widest = line.width > widest ? line.width : widest;
    }
    if (width != nullptr) *width = widest;
    if (height != nullptr) *height = font_ != nullptr ? lines * font_->lineHeight() : 0;
}

void Painter::textBounds(const char* text, Rect rect, Rect& outRect, int maxChars) const {
    int left = rect.x + rect.width;
    int width = 0;
    int lines = 0;
    if (font_ != nullptr) {
        TextLayout layout(FontView(*font_), text, {wrap_, rect.width, tabularDigits_, maxChars, false});
        for (TextLine line; layout.next(line); ++lines) {
            const int start = lineStart(rect, horizontalAlign_, line.width);
            left = start < left ? start : left;
            width = start + line.width > left + width ? line.width : width;
        }
    }
    const int lineHeight = font_ != nullptr ? font_->lineHeight() : 0;
    outRect = {narrow(left), narrow(firstLineTop(rect, verticalAlign_, lines, lineHeight)), narrow(width),
               narrow(lines * lineHeight)};
}

}  // namespace Engine
