#include "embedded-gui-engine/timestringprovider.h"

#include <cstring>

#include "embedded-gui-engine/hooks.h"
#include "engine/src/valueformat.h"

namespace Engine {

void TimeStringProvider::setFormat(const char* format) {
    state_ = State::Untranslated;
    StringProvider::setFormat(format);
}

void TimeStringProvider::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) {
        engineLog(0, __FILE_NAME__, __LINE__, "TimeFormatModifier: No value provider.");
        return;
    }
    if (state_ == State::Untranslated) translate();
    char buffer[TextSize];
    TextWriter writer(buffer, sizeof buffer);
    if (state_ == State::Usable) {
        printTranslated(writer);
    } else {
        ValueFormat("%i", ValueKind::Integer).print(writer, provider_->value());
    }
    finishUnfiltered(buffer);
}

bool TimeStringProvider::fieldOf(char letter, Field& field) {
    switch (letter) {
        case 's': field = Field::SecondsPart; return true;
        case 'S': field = Field::Seconds; return true;
        case 'm': field = Field::MinutesPart; return true;
        case 'M': field = Field::Minutes; return true;
        case 'h': field = Field::HoursPart; return true;
        case 'H': field = Field::Hours; return true;
        case 'd':
        case 'D': field = Field::Days; return true;
        default: return false;
    }
}

int TimeStringProvider::valueOf(Field field, int seconds) {
    switch (field) {
        case Field::SecondsPart: return seconds % 60;
        case Field::Seconds: return seconds;
        case Field::MinutesPart: return seconds / 60 % 60;
        case Field::Minutes: return seconds / 60;
        case Field::HoursPart: return seconds / 3600 % 24;
        case Field::Hours: return seconds / 3600;
        case Field::Days: return seconds / 86400;
    }
    return 0;
}

void TimeStringProvider::translate() {
    state_ = State::Refused;
    TextWriter copy(translated_, sizeof translated_);
    int tokens = 0;
    const char* at = format_ != nullptr ? format_ : "";
    while (*at != '\0' && tokens < MaxTokens) {
        // A conversion is copied whole or not at all, so that a cut never leaves half of one.
        const char* end = at + 1;
        if (*at == '%' && *end == '%') {
            ++end;
        } else if (*at == '%') {
            Conversion conversion;
            if (!conversion.parse(end) || !fieldOf(*end, tokens_[tokens])) {
                reportFormat("a '%' is not followed by a width and one of s, S, m, M, h, H, d, D");
                return;
            }
            ++end;
        }
        const std::string_view piece(at, end);
        if (piece.size() > copy.room()) break;
        const bool isToken = *at == '%' && piece.back() != '%';
        copy.append(isToken ? piece.substr(0, piece.size() - 1) : piece);
        if (isToken) {
            copy.put('u');
            ++tokens;
        }
        at = end;
    }
    state_ = State::Usable;
}

void TimeStringProvider::printTranslated(TextWriter& writer) const {
    const Field* token = tokens_;
    for (const char* at = translated_; *at != '\0';) {
        if (*at != '%') {
            writer.put(*at++);
        } else if (*++at == '%') {
            writer.put(*at++);
        } else {
            Conversion conversion;
            conversion.parse(at);
            conversion.letter = *at++;
            conversion.print(writer, valueOf(*token++, provider_->value()));
        }
    }
}

}  // namespace Engine
