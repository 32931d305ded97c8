#include "embedded-gui-engine/textlayout.h"

#include <algorithm>
#include <limits>

#include "embedded-gui-engine/utf8.h"

namespace Engine {

TextLayout::TextLayout(const FontView& font, const char* text, const Rules& rules)
    : font_(font),
      text_(text != nullptr ? text : ""),
      rules_(rules),
      charsLeft_(rules.maxChars < 0 ? std::numeric_limits<int>::max() : rules.maxChars),
      lineHeight_(font.lineHeight()),
      position_(text_),
      aheadEnd_(text_),
      ahead_(decodeUtf8(aheadEnd_)),
      begin_(text_),
      breakPosition_(text_) {
    if (atEnd()) state_ = State::Empty;
    startLine(text_);
}

bool TextLayout::next(TextLine& line) {
    if (state_ == State::Ended) return false;
    if (state_ == State::Empty) {
        line = {};
    } else {
        while (!atEnd()) {
            if (takeCharacter(line)) return true;
        }
        line_.width = pen_;
        line_.byteCount = bytesTo(charsLeft_ == 0 ? position_ : aheadEnd_);
        line = line_;
    }
    state_ = State::Ended;
    return true;
}

/// Answers whether the character closed a line.
bool TextLayout::takeCharacter(TextLine& closed) {
    const std::uint32_t code = ahead_;
    const char* const start = position_;
    position_ = aheadEnd_;
    ahead_ = decodeUtf8(aheadEnd_);
    --charsLeft_;

    font_.select(code, false);
    const int advance = font_.advanceOf(code, rules_.tabularDigits);
    if (code == space || code == carriageReturn) {
        takeSpace(advance);
    } else if (code == lineFeed) {
        takeLineFeed(advance, closed);
    } else {
        afterSpace_ = false;
    }
    pen_ += font_.kerning();
    bool hasClosed = code == lineFeed;
    if (rules_.wrap && !hasClosed && pen_ + advance > rules_.width) {
        breakLine(start, advance, closed);
        hasClosed = true;
    } else {
        pen_ += advance;
    }
    if (rules_.extent) growExtent();
    return hasClosed;
}

/// The line could end ahead of the character just read, which is one byte long.
void TextLayout::markBreak() {
    line_.width = pen_;
    line_.byteCount = bytesTo(position_) - 1;
}

void TextLayout::takeSpace(int advance) {
    if (afterSpace_) {
        spaceRun_ += advance;
    } else {
        markBreak();
        spaceRun_ = advance;
    }
    afterSpace_ = true;
    breakPosition_ = position_;
}

void TextLayout::takeLineFeed(int advance, TextLine& closed) {
    if (!afterSpace_) markBreak();
    closed = line_;
    startLine(position_);
    line_.width = 0;
    breakPosition_ = position_;
    afterSpace_ = false;
    pen_ = -advance;
}

void TextLayout::breakLine(const char* start, int advance, TextLine& closed) {
    if (line_.byteCount == 0) {
        line_.width = pen_;
        line_.byteCount = bytesTo(start);
        breakPosition_ = start;
    }
    closed = line_;
    pen_ += advance - (spaceRun_ + line_.width);
    startLine(breakPosition_);
}

/// The width stays that of the line before until the next break candidate.
void TextLayout::startLine(const char* begin) {
    begin_ = begin;
    line_.byteStart = static_cast<std::int32_t>(begin - text_);
    line_.byteCount = 0;
    line_.top = lineHeight_;
    line_.bottom = 0;
    spaceRun_ = 0;
}

void TextLayout::growExtent() {
    const FontView::Glyph glyph = font_.glyph();
    const int top = font_.inkTop(glyph.atlasY);
    line_.top = std::min(line_.top, top);
    line_.bottom = std::max(line_.bottom, top + glyph.height);
}

}  // namespace Engine
