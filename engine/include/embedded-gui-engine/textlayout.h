#pragma once

#include <cstdint>

#include "embedded-gui-engine/fontview.h"
#include "embedded-gui-engine/painter.h"

namespace Engine {

inline constexpr std::uint32_t lineFeed = 10;
inline constexpr std::uint32_t carriageReturn = 13;
inline constexpr std::uint32_t space = 32;
inline constexpr std::uint32_t fullStop = 46;

/// Breaks a text into lines, one at a call, without storing any. Greedy: a line is closed at the character that passes
/// the width, at the last run of spaces if the line has one, else before that very character. The characters are
/// selected in the font one by one.
class TextLayout {
  public:
    struct Rules {
        bool wrap = false;
        int width = 0;  ///< pixels, used with `wrap` alone
        bool tabularDigits = false;
        int maxChars = -1;   ///< no limit when negative
        bool extent = true;  ///< fill in `top` and `bottom` of the lines
    };

    /// Neither font nor text is owned; a null `text` is an empty one. An empty text gives one line of zeros.
    TextLayout(const FontView& font, const char* text, const Rules& rules);

    /// False when there is no further line.
    bool next(TextLine& line);

  private:
    enum class State : std::uint8_t { Empty, Walking, Ended };

    bool takeCharacter(TextLine& closed);
    void markBreak();
    void takeSpace(int advance);
    void takeLineFeed(int advance, TextLine& closed);
    void breakLine(const char* start, int advance, TextLine& closed);
    void startLine(const char* begin);
    void growExtent();
    std::int32_t bytesTo(const char* position) const { return static_cast<std::int32_t>(position - begin_); }
    bool atEnd() const { return ahead_ == 0 || charsLeft_ == 0; }

    FontView font_;
    const char* text_;
    Rules rules_;
    State state_ = State::Walking;
    int charsLeft_;
    int lineHeight_;
    const char* position_;       ///< behind the characters taken
    const char* aheadEnd_;       ///< behind the character ahead
    std::uint32_t ahead_;        ///< the character ahead, 0 at the end of the text
    TextLine line_;              ///< under construction: as it would be closed at the last break candidate
    const char* begin_;          ///< of the line
    const char* breakPosition_;  ///< behind the last break candidate
    int pen_ = 0;
    int spaceRun_ = 0;  ///< pixels of the spaces at the break candidate
    bool afterSpace_ = false;
};

}  // namespace Engine
