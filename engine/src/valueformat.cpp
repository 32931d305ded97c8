#include "engine/src/valueformat.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Engine {
namespace {

/// Reads digits. More than Conversion::MaxDigits of them are a fault, answered by false; the number is then the
/// largest.
bool parseNumber(const char*& at, int& number) {
    number = 0;
    int digits = 0;
    for (; *at >= '0' && *at <= '9'; ++at) {
        if (++digits <= Conversion::MaxDigits) number = number * 10 + (*at - '0');
    }
    if (digits <= Conversion::MaxDigits) return true;
    number = Conversion::MaxNumber;
    return false;
}

std::string_view lettersOf(ValueKind kind) {
    switch (kind) {
        case ValueKind::Integer: return "diouxXc";
        case ValueKind::LongLong: return "diouxX";
        case ValueKind::Floating: return "aAeEfFgG";
        case ValueKind::String: return "s";
    }
    return "";
}

/// The size modifier of `kind`, skipped. Only a 64-bit value needs one.
bool skipSize(const char*& at, ValueKind kind) {
    const std::size_t size = std::strspn(at, "hlLqjzt");
    const std::string_view given(at, size);
    at += size;
    switch (kind) {
        case ValueKind::LongLong: return given == "ll";
        case ValueKind::Floating: return given.empty() || given == "l";
        case ValueKind::Integer:
        case ValueKind::String: return given.empty();
    }
    return false;
}

/// The text of a conversion for printf: "%" flags width precision size letter.
class PrintfText {
  public:
    PrintfText(const Conversion& conversion, std::string_view size) {
        append("%");
        append(conversion.flags);
        if (conversion.width >= 0) appendNumber(conversion.width);
        if (conversion.precision >= 0) {
            append(".");
            appendNumber(conversion.precision);
        }
        append(size);
        append({&conversion.letter, 1});
        *end_ = '\0';
    }
    const char* text() const { return text_; }

  private:
    void append(std::string_view part) { end_ = std::copy(part.begin(), part.end(), end_); }
    void appendNumber(int number) {
        if (number >= 10) appendNumber(number / 10);
        *end_++ = static_cast<char>('0' + number % 10);
    }

    char text_[24];
    char* end_ = text_;
};
// '%', five flags, two numbers of three digits, the point, "ll", the letter and the terminator.
static_assert(1 + 5 + 2 * Conversion::MaxDigits + 1 + 2 + 1 + 1 <= 24);

void printAs(TextWriter& writer, const PrintfText* format, ...) {
    va_list arguments;
    va_start(arguments, format);
// The format is one that PrintfText built, of a kind that its caller passes.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    writer.print(format->text(), arguments);
#pragma GCC diagnostic pop
    va_end(arguments);
}

}  // namespace

void TextWriter::append(std::string_view text) {
    const std::size_t count = std::min(text.size(), room());
    std::copy_n(text.begin(), count, buffer_ + length_);
    length_ += count;
    buffer_[length_] = '\0';
}

void TextWriter::print(const char* format, va_list arguments) {
    const int wanted = std::vsnprintf(buffer_ + length_, room() + 1, format, arguments);
    if (wanted > 0) length_ += std::min(static_cast<std::size_t>(wanted), room());
    buffer_[length_] = '\0';
}

bool Conversion::parse(const char*& at) {
    for (; *at != '\0' && isFlag(*at); ++at) addFlag(*at);
    bool valid = true;
    if (*at >= '0' && *at <= '9') valid = parseNumber(at, width);
    if (*at == '.') valid = parseNumber(++at, precision) && valid;
    return valid;
}

void Conversion::addFlag(char flag) {
    const std::size_t count = std::strlen(flags);
    if (std::strchr(flags, flag) != nullptr || count + 1 >= sizeof flags) return;
    flags[count] = flag;
    flags[count + 1] = '\0';
}

void Conversion::print(TextWriter& writer, int value) const {
    const PrintfText printfText(*this, "");
    printAs(writer, &printfText, value);
}

void Conversion::print(TextWriter& writer, long long value) const {
    const PrintfText printfText(*this, "ll");
    printAs(writer, &printfText, value);
}

void Conversion::print(TextWriter& writer, double value) const {
    const PrintfText printfText(*this, "");
    printAs(writer, &printfText, value);
}

void Conversion::print(TextWriter& writer, const char* value) const {
    std::string_view text(value != nullptr ? value : "");
    if (precision >= 0) text = text.substr(0, static_cast<std::size_t>(precision));
    const std::size_t columns = width > 0 ? static_cast<std::size_t>(width) : 0;
    const std::size_t padding = columns > text.size() ? columns - text.size() : 0;
    const bool left = std::strchr(flags, '-') != nullptr;
    if (left) writer.append(text);
    for (std::size_t count = 0; count < padding; ++count) writer.put(' ');
    if (!left) writer.append(text);
}

ValueFormat::ValueFormat(const char* format, ValueKind kind) {
    if (format == nullptr) {
        fault_ = "there is none";
        return;
    }
    const char* start = format;
    const char* at = std::strchr(format, '%');
    for (; at != nullptr && fault_ == nullptr; at = std::strchr(at, '%')) {
        if (at[1] == '%') {
            at += 2;
        } else if (conversion_.letter != '\0') {
            fault_ = "it has more than one conversion";
        } else {
            before_ = {start, at};
            start = at = parseConversion(at + 1, kind);
        }
    }
    (conversion_.letter != '\0' ? behind_ : before_) = start;
}

const char* ValueFormat::parseConversion(const char* at, ValueKind kind) {
    if (!conversion_.parse(at)) {
        fault_ = "a width or precision has more than three digits";
        return at;
    }
    if (!skipSize(at, kind) || *at == '\0' || lettersOf(kind).find(*at) == std::string_view::npos) {
        fault_ = "its conversion does not fit the value";
        return at;
    }
    conversion_.letter = *at;
    return at + 1;
}

void ValueFormat::appendLiteral(TextWriter& writer, std::string_view text) {
    for (std::size_t percent; (percent = text.find('%')) != std::string_view::npos;) {
        writer.append(text.substr(0, percent + 1));
        text.remove_prefix(std::min(percent + 2, text.size()));
    }
    writer.append(text);
}

}  // namespace Engine
