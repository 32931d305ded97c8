#pragma once

#include <cstdint>
#include <deque>
#include <span>

#include "apps/common/sharedmemory/sharedmemory.h"

namespace Backend {

constexpr unsigned int maxAreas = 32;

/// Base address of the usable bytes of each memory area, by its place in the opening order; null while it is not open.
/// Readers hold the address of an entry, so they can be made before the areas are open.
extern unsigned char* areaBases[maxAreas];

struct AreaDefinition {
    const char* name;
    std::uint32_t size;  ///< usable bytes
};

/// All memory areas of the product. Opens them in order and fills `areaBases`; fatal when one is missing or has
/// another size than this program was built with. The entries are null again when this is gone.
class Areas {
  public:
    explicit Areas(std::span<const AreaDefinition> definitions);
    Areas(const Areas&) = delete;
    Areas& operator=(const Areas&) = delete;
    ~Areas();

  private:
    std::deque<SharedMemory> memories_;
};

}  // namespace Backend
