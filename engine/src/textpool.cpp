#include "embedded-gui-engine/textpool.h"

#include <algorithm>
#include <array>
#include <bit>

#include "embedded-gui-engine/hooks.h"

namespace Engine::TextPool {

namespace {

constexpr std::uint32_t smallestBlock = 32;
constexpr std::uint32_t chunkSize = 64 * 1024;

struct FreeBlock {
    FreeBlock* next;
};

static_assert(smallestBlock >= sizeof(FreeBlock));

alignas(smallestBlock) char firstChunk[capacity];
char* chunk = firstChunk;
std::uint32_t chunkLeft = capacity;
std::array<FreeBlock*, 32> freeBlocks{};  // by the power of two of their size

FreeBlock*& freeList(std::uint32_t size) {
    return freeBlocks[static_cast<std::size_t>(std::countr_zero(size))];
}

void addChunk(std::uint32_t size) {
    chunkLeft = std::max(size, chunkSize);
    // Chunks stay for the life of the process: labels are static.
    chunk = static_cast<char*>(::operator new(chunkLeft));
    engineLog(1, __FILE_NAME__, __LINE__, "The pool of label texts is used up: taking %u more bytes from the heap",
              chunkLeft);
}

}  // namespace

std::uint32_t blockSize(std::uint32_t bytes) {
    return std::bit_ceil(std::max(bytes, smallestBlock));
}

char* take(std::uint32_t bytes) {
    const std::uint32_t size = blockSize(bytes);
    if (FreeBlock* block = freeList(size); block != nullptr) {
        freeList(size) = block->next;
        return reinterpret_cast<char*>(block);
    }
    if (size > chunkLeft) addChunk(size);
    char* block = chunk;
    chunk += size;
    chunkLeft -= size;
    return block;
}

void giveBack(char* block, std::uint32_t bytes) {
    const std::uint32_t size = blockSize(bytes);
    freeList(size) = new (block) FreeBlock{freeList(size)};
}

}  // namespace Engine::TextPool
