#pragma once

#include <cstdint>

namespace Engine {

/// Room for the texts of labels that change while the program runs. Blocks are cut from memory that the program has
/// from its start, and a block that is given back serves the next text of its size: once every label has held its
/// longest text, nothing is taken any more. Only when that memory is used up, more comes from the heap, a warning
/// being logged.
namespace TextPool {

/// Bytes that are there from the start.
inline constexpr std::uint32_t capacity = 256 * 1024;

/// Bytes of a block that is asked for `bytes`: the next power of two, at least 32.
std::uint32_t blockSize(std::uint32_t bytes);
/// A block of blockSize(bytes) bytes; never null.
char* take(std::uint32_t bytes);
/// `bytes` as they were asked for.
void giveBack(char* block, std::uint32_t bytes);

}  // namespace TextPool

}  // namespace Engine
