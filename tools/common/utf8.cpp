#include "tools/common/utf8.h"

namespace {

struct Lead {
    int continuations;
    char32_t bits;
    char32_t smallest;
};

std::optional<Lead> leadOf(unsigned char byte) {
    if (byte < 0x80) return Lead{0, byte, 0};
    if (byte >= 0xC2 && byte < 0xE0) return Lead{1, byte & 0x1Fu, 0x80};
    if (byte >= 0xE0 && byte < 0xF0) return Lead{2, byte & 0x0Fu, 0x800};
    if (byte >= 0xF0 && byte < 0xF5) return Lead{3, byte & 0x07u, 0x10000};
    return std::nullopt;
}

}  // namespace

std::optional<std::u32string> decodeUtf8(std::string_view text) {
    std::u32string codes;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = leadOf(static_cast<unsigned char>(text[i++]));
        if (!lead || text.size() - i < static_cast<std::size_t>(lead->continuations)) return std::nullopt;
        char32_t code = lead->bits;
        for (int n = 0; n < lead->continuations; ++n) {
            const auto byte = static_cast<unsigned char>(text[i++]);
            if ((byte & 0xC0) != 0x80) return std::nullopt;
            code = (code << 6) | (byte & 0x3Fu);
        }
        if (code < lead->smallest || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return std::nullopt;
        codes += code;
    }
    return codes;
}

bool isUtf8(std::string_view text) {
    return decodeUtf8(text).has_value();
}

std::string encodeUtf8(char32_t code) {
    const auto low = [&](int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800) return {static_cast<char>(0xC0 | (code >> 6)), low(0)};
    if (code < 0x10000) return {static_cast<char>(0xE0 | (code >> 12)), low(6), low(0)};
    return {static_cast<char>(0xF0 | (code >> 18)), low(12), low(6), low(0)};
}
