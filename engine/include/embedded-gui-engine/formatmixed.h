#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Engine {

/// printf for records whose types only the format knows: each conversion takes the next of `words`, which are 32-bit
/// words of a record. c d i o p u x X print an integer (n prints nothing), a A e E f F g G the word's bits as a
/// float, s its four bytes as a text, "%%" takes none. A conversion without a word left takes 0. `buffer` has `length`
/// bytes, the terminator included; what does not fit is dropped.
void formatMixed(char* buffer, std::size_t length, const char* format, std::span<const std::uint32_t> words);

}  // namespace Engine
