#include "embedded-gui-engine/utf8.h"

namespace Engine {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Number of continuation bytes that belong to a first byte, 0 when it begins no sequence.
int continuationCount(unsigned first) {
    if ((first & 0xE0U) == 0xC0U) return 1;
    if ((first & 0xF0U) == 0xE0U) return 2;
    if ((first & 0xF8U) == 0xF0U) return 3;
    return 0;
}

}  // namespace

std::uint32_t decodeUtf8Multibyte(const char*& at) {
    const std::uint32_t first = static_cast<unsigned char>(*at++);
    const int count = continuationCount(first);
    if (count == 0) return isContinuation(*at) ? 0 : first;
    std::uint32_t code = first & (0x3FU >> count);
    for (int i = 0; i < count; ++i) {
        if (!isContinuation(*at)) return 0;
        code = code << 6 | (static_cast<unsigned char>(*at++) & 0x3FU);
    }
    return code;
}

}  // namespace Engine
