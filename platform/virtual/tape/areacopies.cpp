#include "platform/virtual/tape/areacopies.h"

#include <sys/mman.h>

#include <atomic>
#include <cstring>

#include "platform/virtual/tape/event.h"

namespace Platform::Virtual {

namespace {

// A line of the cache: most of an area is the same, and is passed over by this much at a time.
constexpr std::size_t stride = 16;

/// Private memory of `size` bytes, rounded up to whole pages by the system; null when there is none.
std::uint32_t* pages(std::size_t size) {
    void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory != MAP_FAILED ? static_cast<std::uint32_t*>(memory) : nullptr;
}

/// Calls `found` for each word in which the two differ.
template <typename Found>
void compareWords(const std::uint32_t* one, const std::uint32_t* other, std::size_t words, Found found) {
    for (std::size_t start = 0; start < words; start += stride) {
        const std::size_t count = std::min(stride, words - start);
        if (std::memcmp(one + start, other + start, count * sizeof *one) == 0) continue;
        for (std::size_t i = start; i < start + count; ++i)
            if (one[i] != other[i]) found(i);
    }
}

/// Which bytes of two words differ: 0xff for each of them.
std::uint32_t differingBytes(std::uint32_t one, std::uint32_t other) {
    std::uint32_t mask = 0;
    for (std::uint32_t byte = 0xff; byte != 0; byte <<= 8)
        if (((one ^ other) & byte) != 0) mask |= byte;
    return mask;
}

}  // namespace

AreaCopies::~AreaCopies() {
    while (!copies_.empty()) remove(copies_.back().own);
}

// Mappings are whole pages, so that the last word may reach past the area's end.
void* AreaCopies::add(std::uint32_t id, void* shared, std::size_t size) {
    Copy copy = {id, size, static_cast<std::uint32_t*>(shared), pages(size), pages(size)};
    if (copy.own == nullptr || copy.base == nullptr) return nullptr;
    std::memcpy(copy.base, copy.shared, size);
    std::memcpy(copy.own, copy.base, size);
    copies_.push_back(copy);
    return copy.own;
}

bool AreaCopies::remove(void* own) {
    for (auto copy = copies_.begin(); copy != copies_.end(); ++copy) {
        if (copy->own != own) continue;
        give(*copy);
        for (void* mapping : {copy->shared, copy->own, copy->base}) ::munmap(mapping, copy->size);
        copies_.erase(copy);
        return true;
    }
    return false;
}

void AreaCopies::give() {
    for (Copy& copy : copies_) give(copy);
}

void AreaCopies::exchange(std::vector<std::byte>& changed) {
    for (Copy& copy : copies_) {
        give(copy);
        takeIn(copy, changed);
    }
}

void AreaCopies::give(Copy& copy) {
    compareWords(copy.own, copy.base, copy.words(), [&](std::size_t i) {
        const std::uint32_t mine = differingBytes(copy.own[i], copy.base[i]);
        std::atomic_ref<std::uint32_t> shared(copy.shared[i]);
        std::uint32_t now = shared.load();
        while (!shared.compare_exchange_weak(now, (now & ~mine) | (copy.own[i] & mine))) {
        }
        copy.base[i] = copy.own[i];
    });
}

// Each word is read once: what the product gets is what is told.
void AreaCopies::takeIn(Copy& copy, std::vector<std::byte>& changed) {
    std::size_t first = 0, count = 0;
    const auto tell = [&] {
        if (count != 0)
            append(changed, MemoryWords{copy.id, first, asBytes(copy.own + first, count * sizeof *copy.own)});
    };
    compareWords(copy.shared, copy.base, copy.words(), [&](std::size_t i) {
        copy.own[i] = copy.base[i] = std::atomic_ref<std::uint32_t>(copy.shared[i]).load();
        if (count == 0 || first + count != i) {
            tell();
            first = i;
            count = 0;
        }
        ++count;
    });
    tell();
}

}  // namespace Platform::Virtual
