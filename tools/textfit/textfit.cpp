#include "tools/textfit/textfit.h"

#include <algorithm>
#include <iomanip>
#include <limits>
#include <sstream>

#include "embedded-gui-engine/border.h"
#include "embedded-gui-engine/textlayout.h"
#include "embedded-gui-engine/utf8.h"

namespace TextFit {

namespace {

using Engine::TextLayout;
using Engine::TextLine;

/// From here on scripts are written without spaces, and a line may end at any character.
constexpr std::uint32_t firstIdeograph = 0x2E80;

bool isWordCharacter(std::uint32_t code) {
    const bool alphanumeric =
        (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
    return alphanumeric || (code >= 0xC0 && code < firstIdeograph);
}

class Measurement {
  public:
    Measurement(const Spot& spot, const std::string& language, Engine::TextId key, const char* text)
        : spot_(spot), text_(text), blank_{spot.name, language, key, text, Fault::TooWide} {
        Engine::copyInCase(text_.data(), text, spot.caseMode);
    }

    std::vector<Finding> run() {
        checkCharacters();
        layOut();
        if (spot_.overflow == Spot::Overflow::Fault) {
            checkWidth();
            checkHeight();
            checkWords();
        }
        return std::move(findings_);
    }

  private:
    int contentWidth() const { return spot_.width - 2 * (spot_.border + spot_.padding); }

    void add(Fault fault, int needed, int available) {
        Finding finding = blank_;
        finding.fault = fault;
        finding.needed = needed;
        finding.available = available;
        findings_.push_back(std::move(finding));
    }

    void checkCharacters() {
        const char* at = text_.c_str();
        const char* const end = at + text_.size();
        while (at < end) {
            const char* const start = at;
            const std::uint32_t code = Engine::decodeUtf8(at);
            if (code == 0) {
                add(Fault::NotUtf8, static_cast<int>(start - text_.c_str()), 0);
                return;
            }
            if (code != Engine::carriageReturn && spot_.font->selectGlyph(code, false) == 0)
                add(Fault::NoGlyph, static_cast<int>(code), 0);
        }
    }

    void layOut() {
        TextLayout layout(Engine::FontView(*spot_.font), text_.c_str(), {spot_.wrap, contentWidth(), true});
        for (TextLine line; layout.next(line);) lines_.push_back(line);
    }

    void checkWidth() {
        const auto widest = std::max_element(lines_.begin(), lines_.end(),
                                             [](const TextLine& a, const TextLine& b) { return a.width < b.width; });
        if (spot_.ellipsis == Engine::Ellipsis::None && widest->width > contentWidth())
            add(Fault::TooWide, widest->width, contentWidth());
    }

    /// Ink counts, not the line height: the widget's rectangle is the clip.
    void checkHeight() {
        if (spot_.autoHeight) return;
        const int lineHeight = spot_.font->lineHeight();
        const int slack =
            spot_.height - 2 * (spot_.border + spot_.padding) - static_cast<int>(lines_.size()) * lineHeight;
        int y = spot_.border + spot_.padding;
        if (spot_.verticalAlign == Engine::Painter::Align::Centre) y += slack / 2;
        if (spot_.verticalAlign == Engine::Painter::Align::End) y += slack;
        int top = std::numeric_limits<int>::max();
        int bottom = std::numeric_limits<int>::min();
        for (const TextLine& line : lines_) {
            if (line.bottom > line.top) {
                top = std::min(top, y + line.top);
                bottom = std::max(bottom, y + line.bottom);
            }
            y += lineHeight;
        }
        const int available = spot_.height - 2 * spot_.border;
        const int over = std::max(0, spot_.border - top) + std::max(0, bottom - (spot_.height - spot_.border));
        if (top < bottom && over > 0) add(Fault::TooHigh, available + over, available);
    }

    void checkWords() {
        for (std::size_t i = 0; spot_.wrap && i + 1 < lines_.size(); ++i) {
            const std::int32_t end = lines_[i].byteStart + lines_[i].byteCount;
            if (lines_[i + 1].byteStart != end || !joinsWord(end)) continue;
            const char* const word = wordAround(end);
            TextLayout layout(Engine::FontView(*spot_.font), word, {false, 0, true});
            TextLine whole;
            layout.next(whole);
            add(Fault::WordBroken, whole.width, contentWidth());
            return;
        }
    }

    bool joinsWord(std::int32_t at) const {
        const char* behind = text_.c_str() + at;
        const char* ahead = behind;
        do {
            if (ahead == text_.c_str()) return false;
            --ahead;
        } while ((static_cast<unsigned char>(*ahead) & 0xC0) == 0x80);
        return isWordCharacter(Engine::decodeUtf8(ahead)) && isWordCharacter(Engine::decodeUtf8(behind));
    }

    const char* wordAround(std::int32_t at) {
        const auto begin = text_.find_last_of(" \n", static_cast<std::size_t>(at));
        word_ = text_.substr(begin == std::string::npos ? 0 : begin + 1);
        word_.resize(std::min(word_.size(), word_.find_first_of(" \n")));
        return word_.c_str();
    }

    const Spot& spot_;
    std::string text_;
    std::string word_;
    Finding blank_;
    std::vector<TextLine> lines_;
    std::vector<Finding> findings_;
};

}  // namespace

Spot spotOf(const Engine::Label& label, std::string name) {
    Spot spot;
    spot.name = std::move(name);
    spot.font = label.font();
    spot.width = label.width();
    spot.height = label.height();
    spot.border = label.border() != nullptr ? label.border()->thickness() : 0;
    spot.padding = label.padding();
    spot.wrap = label.wraps();
    spot.autoHeight = label.hasAutoHeight();
    spot.verticalAlign = label.verticalAlign();
    spot.ellipsis = label.ellipsis();
    spot.caseMode = label.caseMode();
    return spot;
}

std::vector<Finding> measureText(const Spot& spot, const std::string& language, Engine::TextId key, const char* text) {
    if (spot.font == nullptr || *text == '\0') return {};
    return Measurement(spot, language, key, text).run();
}

std::vector<Finding> measure(const Spot& spot, std::span<const Language> languages,
                             std::span<const Engine::TextId> keys) {
    std::vector<Finding> findings;
    for (const Engine::TextId key : keys) {
        for (const Language& language : languages) {
            if (key.key >= language.texts.size()) continue;
            for (Finding& finding : measureText(spot, language.name, key, language.texts[key.key]))
                findings.push_back(std::move(finding));
        }
    }
    return findings;
}

std::string describe(const Finding& finding) {
    std::ostringstream line;
    line << finding.spot << ": " << finding.language << " text " << finding.key.key << " \"" << finding.text << "\" ";
    switch (finding.fault) {
        case Fault::TooWide:
            line << "is " << finding.needed << " pixels wide where " << finding.available
                 << " fit: shorten it, widen the label, let it wrap or give it an ellipsis";
            break;
        case Fault::TooHigh:
            line << "needs " << finding.needed << " pixels of height where " << finding.available
                 << " are there: shorten it, make the label higher or give it automatic height";
            break;
        case Fault::WordBroken:
            line << "has a word of " << finding.needed << " pixels that is broken at " << finding.available
                 << ": use a shorter word or widen the label";
            break;
        case Fault::NoGlyph:
            line << "has the character U+" << std::uppercase << std::hex << std::setw(4) << std::setfill('0')
                 << finding.needed << ", which the label's font lacks: add it to the font or write it otherwise";
            break;
        case Fault::NotUtf8:
            line << "is no UTF-8 from byte " << finding.needed << " on: what follows is never shown";
            break;
    }
    return line.str();
}

}  // namespace TextFit
