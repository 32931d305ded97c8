#pragma once

#include <cstdint>

#include "embedded-gui-engine/stringprovider.h"

namespace Engine {

/// Shows a duration in seconds. The format has up to six tokens: '%', printf's flags and width, and a letter.
/// s, m, h are the seconds, minutes and hours within the next larger unit, d or D the days; S, M, H count the whole
/// duration. "%%" is a percent sign. Another conversion is refused with one log line, and the seconds are shown.
class TimeStringProvider : public StringProvider<int> {
  public:
    /// `format` may be replaced later; a regular expression does not apply.
    constexpr TimeStringProvider(const char* format, const ValueProvider<int>* provider, std::span<char> storage)
        : StringProvider(format, provider, nullptr, storage) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;
    void setFormat(const char* format) override;

  private:
    static constexpr int MaxTokens = 6;
    /// Bytes of the translated format, the terminator included; the rest of a longer format is dropped.
    static constexpr std::size_t FormatSize = 64;

    enum class Field : int { SecondsPart, Seconds, MinutesPart, Minutes, HoursPart, Hours, Days };
    enum class State : std::uint8_t { Untranslated, Usable, Refused };

    static bool fieldOf(char letter, Field& field);
    static int valueOf(Field field, int seconds);
    void translate();
    void printTranslated(class TextWriter& writer) const;

    Field tokens_[MaxTokens] = {};
    char translated_[FormatSize] = "";  ///< the format with the letter of each token replaced by 'u'
    State state_ = State::Untranslated;
};

}  // namespace Engine
