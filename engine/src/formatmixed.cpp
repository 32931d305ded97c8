#include "embedded-gui-engine/formatmixed.h"

#include <bit>
#include <cstring>
#include <string_view>

#include "embedded-gui-engine/hooks.h"
#include "engine/src/valueformat.h"

namespace Engine {
namespace {

/// The longest piece of text up to the end of a conversion.
constexpr std::size_t MaxPiece = 254;

bool isOneOf(std::string_view set, char character) {
    return set.find(character) != std::string_view::npos;
}

/// Size modifiers and whatever else stands between '%' and the letter is passed over.
const char* parseConversion(const char* at, Conversion& conversion) {
    for (; *at != '\0' && !isOneOf("cdinopuxXaAeEfFgGs%", *at); ++at) {
        const bool isDigit = *at >= '1' && *at <= '9';
        if (!isDigit && *at != '.' && !Conversion::isFlag(*at)) continue;
        conversion.parse(at);
        --at;
    }
    conversion.letter = *at;
    return *at != '\0' ? at + 1 : at;
}

void printPointer(TextWriter& writer, Conversion conversion, std::uint32_t word) {
    // As the C library shows an address.
    if (word == 0) {
        conversion.print(writer, "(nil)");
        return;
    }
    conversion.letter = 'x';
    conversion.addFlag('#');
    conversion.print(writer, static_cast<int>(word));
}

void printText(TextWriter& writer, const Conversion& conversion, std::uint32_t word) {
    char text[sizeof word + 1] = "";
    std::memcpy(text, &word, sizeof word);
    conversion.print(writer, text);
}

void printWord(TextWriter& writer, const Conversion& conversion, std::uint32_t word) {
    switch (conversion.letter) {
        case 'n': break;
        case 'p': printPointer(writer, conversion, word); break;
        case 's': printText(writer, conversion, word); break;
        case 'c':
        case 'd':
        case 'i':
        case 'o':
        case 'u':
        case 'x':
        case 'X': conversion.print(writer, static_cast<int>(word)); break;
        default: conversion.print(writer, static_cast<double>(std::bit_cast<float>(word))); break;
    }
}

}  // namespace

void formatMixed(char* buffer, std::size_t length, const char* format, std::span<const std::uint32_t> words) {
    if (length == 0) return;
    TextWriter writer(buffer, length);
    const char* at = format != nullptr ? format : "";
    const char* piece = at;
    while (*at != '\0' && writer.room() > 0) {
        if (at - piece >= static_cast<std::ptrdiff_t>(MaxPiece)) {
            engineLog(1, __FILE_NAME__, __LINE__, "size of tmpFmt too small!");
            piece = at;
        }
        if (*at != '%') {
            writer.put(*at++);
            continue;
        }
        Conversion conversion;
        const char* end = parseConversion(at + 1, conversion);
        if (conversion.letter == '\0') {
            writer.append(at);
            return;
        }
        piece = at = end;
        if (conversion.letter == '%') {
            writer.put('%');
            continue;
        }
        printWord(writer, conversion, words.empty() ? 0 : words.front());
        if (!words.empty()) words = words.subspan(1);
    }
}

}  // namespace Engine
