#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/texttable.h"

/// Whether the texts of all languages fit where they are shown, measured with the fonts and the breaking rule that the
/// product draws with.
namespace TextFit {

/// A place that shows texts: what of a label decides whether a text fits.
struct Spot {
    /// An overflow may be meant, for instance where a text scrolls.
    enum class Overflow : bool { Fault, Wanted };

    std::string name;  ///< page and widget, for the report
    Engine::Font* font = nullptr;
    int width = 0;    ///< of the widget, pixels
    int height = 0;   ///< of the widget, pixels
    int border = 0;   ///< thickness on each side, pixels
    int padding = 0;  ///< on each side, pixels
    bool wrap = false;
    bool autoHeight = false;
    Engine::Painter::Align verticalAlign = Engine::Painter::Align::Start;
    Engine::Ellipsis ellipsis = Engine::Ellipsis::None;
    Engine::CaseMode caseMode = Engine::CaseMode::AsWritten;
    Overflow overflow = Overflow::Fault;
};

/// The spot of a label that has its final rectangle, in its normal state.
Spot spotOf(const Engine::Label& label, std::string name);

struct Language {
    std::string name;
    Engine::LanguageTexts texts;
};

enum class Fault : std::uint8_t {
    TooWide,     ///< a line passes the content's width, and no ellipsis is asked for
    TooHigh,     ///< ink lies outside of the widget or on its border
    WordBroken,  ///< wrapping breaks a word of an alphabet in two
    NoGlyph,     ///< the font lacks a character
    NotUtf8      ///< the text has broken bytes; what follows them is never shown
};

struct Finding {
    std::string spot;
    std::string language;
    Engine::TextId key;
    std::string text;
    Fault fault;
    int needed = 0;     ///< pixels; for NoGlyph the code point, for NotUtf8 the byte's position
    int available = 0;  ///< pixels
};

/// The faults of one text in a spot; a wanted overflow is none. `language` and `key` are only handed through.
std::vector<Finding> measureText(const Spot& spot, const std::string& language, Engine::TextId key, const char* text);

/// The faults of all texts that the spot can show, in all languages. Keys beyond a table are passed over.
std::vector<Finding> measure(const Spot& spot, std::span<const Language> languages,
                             std::span<const Engine::TextId> keys);

/// One line for a person: where, what, and what to do.
std::string describe(const Finding& finding);

}  // namespace TextFit
