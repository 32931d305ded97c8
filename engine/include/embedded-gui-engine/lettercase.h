#pragma once

#include <cstddef>
#include <cstdint>

namespace Engine {

/// What a label makes of the letters of its text. Works on bytes: letters beyond ASCII stay as they are.
enum class CaseMode : std::uint32_t {
    AsWritten = 0,
    Upper = 1,
    Lower = 2,
    Words = 3  ///< the first letter of each word becomes a capital, the others stay
};

/// The byte `byte` of a text under `mode`; `previous` is the byte ahead of it after its own transformation, a space at
/// the start of the text.
constexpr char transformCase(CaseMode mode, char byte, char previous) {
    const bool lower = byte >= 'a' && byte <= 'z';
    const bool upper = byte >= 'A' && byte <= 'Z';
    const bool raise = mode == CaseMode::Upper || (mode == CaseMode::Words && previous == ' ');
    if (lower && raise) return static_cast<char>(byte - 'a' + 'A');
    if (upper && mode == CaseMode::Lower) return static_cast<char>(byte - 'A' + 'a');
    return byte;
}

/// Whether `text` is what `source` gives under `mode`.
bool equalsInCase(const char* text, const char* source, CaseMode mode);

/// Writes `source` under `mode` with its terminator to `target`, which has room for as many bytes as `source` and may
/// be the same string or begin ahead of it.
void copyInCase(char* target, const char* source, CaseMode mode);

}  // namespace Engine
