#include <array>
#include <cstdlib>
#include <limits>

#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/utf8.h"
#include "embedded-gui-engine/textlayout.h"

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

/// The lines of a text whose number must be known before the first one is drawn. As many as a screen shows are kept;
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
    std::array<TextLine, 32> lines_;
    std::size_t kept_ = 0;
    std::size_t at_ = 0;
    int beyond_ = 0;
    TextLayout rest_;
};

/// Draws the characters of one line, and dots in place of those that an ellipsis leaves out.
class LineDrawer {
  public:
    /// `dots` is the width of the dots, negative when they stand at the end, 0 without an ellipsis.
    LineDrawer(Painter& painter, Rect rect, int dots, int pen, int y)
        : painter_(painter), font_(*painter.font()), rect_(rect), dots_(dots), pen_(pen), y_(y) {}

    void draw(const char* at, const char* end) {
        while (at < end) {
            const std::uint32_t code = decodeUtf8(at);
            if (code == 0 || !drawCharacter(code)) return;
        }
    }

    int pen() const { return pen_; }

  private:
    void select(std::uint32_t code) {
        const std::uint32_t key = code | static_cast<std::uint32_t>(font_.id()) << 24;
        font_.selectGlyph(code, !painter_.isGlyphCached(key));
    }

    void drawDots(int x) {
        select(fullStop);
        for (int i = 0; i < dotCount; ++i) x += painter_.drawChar(fullStop, x, y_);
        pen_ = x;
    }

    /// False when the line ends here.
    bool drawCharacter(std::uint32_t code) {
        select(code);
        pen_ += font_.kerning();
        if (dots_ != 0) {
            const int advance = advanceOf(font_, code, painter_.tabularDigits());
            if (rect_.x + dots_ > pen_) {
                if (rect_.x + dots_ > pen_ + advance) {
                    pen_ += advance;
                } else {
                    drawDots(pen_ + advance - dots_);
                }
                return true;
            }
            if (rect_.x + rect_.width + dots_ <= pen_ + advance) {
                drawDots(pen_);
                return false;
            }
        }
        pen_ += painter_.drawChar(code, pen_, y_);
        return true;
    }

    Painter& painter_;
    Font& font_;
    Rect rect_;
    int dots_;
    int pen_;
    int y_;
};

}  // namespace

int Painter::drawChar(std::uint32_t code, int x, int y) {
    if (font_ == nullptr) return 0;
    const int width = font_->glyphWidth();
    const int height = font_->glyphHeight();
    int offset = font_->bearing();
    int advance = font_->advance();
    if (tabularDigits_ && isDigit(code)) {
        advance = font_->digitWidth();
        offset = (advance - width) / 2;
    }
    if (width == 0 || height == 0) return advance;

    const int atlasY = font_->atlasY();
    const int lineHeight = font_->lineHeight();
    const int left = x + offset;
    const int top = y + font_->baseline() + (lineHeight != 0 ? atlasY % lineHeight : atlasY);
    if (!fitsInt16(left) || !fitsInt16(top)) return advance;  // far outside of any surface
    const Rect place{narrow(left), narrow(top), narrow(width), narrow(height)};
    Image atlas;
    font_->atlas(atlas);
    if (haloRadius_ < 1) {
        drawImage(atlas, font_->atlasX(), atlasY, place, code | static_cast<std::uint32_t>(font_->id()) << 24);
    } else {
        drawMaskHalo(atlas, font_->atlasX(), atlasY, place, haloRadius_);
    }
    return advance;
}

std::vector<TextLine> Painter::layoutText(const char* text, Rect rect, int maxChars) const {
    std::vector<TextLine> lines;
    if (font_ == nullptr) return lines;
    TextLayout layout(*font_, text, {wrap_, rect.width, tabularDigits_, maxChars});
    for (TextLine line; layout.next(line);) lines.push_back(line);
    return lines;
}

int Painter::drawText(const char* text, Rect rect, int scrollX, int scrollY, int maxChars) {
    if (font_ == nullptr) return rect.x;
    if (text == nullptr) text = "";
    LineList lines(TextLayout(*font_, text, {wrap_, rect.width, tabularDigits_, maxChars, false}));

    int dots = 0;
    if (ellipsis_ != 0) {
        font_->selectGlyph(fullStop, false);
        dots = dotCount * font_->advance() * (ellipsis_ == 1 ? -1 : 1);
    }
    const int lineHeight = font_->lineHeight();
    int y = firstLineTop(rect, verticalAlign_, lines.count(), lineHeight) + scrollY;
    int pen = rect.x;
    for (TextLine line; lines.next(line); y += lineHeight) {
        const bool tooLong = dots != 0 && line.width > rect.width;
        const Align align = !tooLong ? horizontalAlign_ : Align::Start;
        pen = tooLong && dots > 0 ? rect.x + rect.width - line.width : lineStart(rect, align, line.width);
        LineDrawer drawer(*this, rect, tooLong ? dots : 0, pen + scrollX, y);
        drawer.draw(text + line.byteStart, text + line.byteStart + line.byteCount);
        pen = drawer.pen();
    }
    return pen;
}

void Painter::measureText(const char* text, Rect rect, int* width, int* height, int maxChars) const {
    int widest = 0;
    int lines = 0;
    if (font_ != nullptr) {
        TextLayout layout(*font_, text, {wrap_, rect.width, tabularDigits_, maxChars, false});
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
        TextLayout layout(*font_, text, {wrap_, rect.width, tabularDigits_, maxChars, false});
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
