#pragma once

#include <cstdint>

namespace Engine {

/// The rest of decodeUtf8, for first bytes from 0x80.
std::uint32_t decodeUtf8Multibyte(const char*& at);

/// Reads one code point of the zero-terminated text at `at` and moves `at` behind what was read; at the terminator it
/// stays and the result is 0. A broken sequence gives 0 too, `at` standing behind the bytes that still fitted: the
/// first one at least. A byte that begins no sequence (0x80 to 0xbf, 0xf8 to 0xff) and has no continuation byte behind
/// it stands for itself, so that such bytes of old Latin-1 strings pass.
inline std::uint32_t decodeUtf8(const char*& at) {
    const auto first = static_cast<unsigned char>(*at);
    if (first >= 0x80) return decodeUtf8Multibyte(at);
    if (first != 0) ++at;
    return first;
}

}  // namespace Engine
