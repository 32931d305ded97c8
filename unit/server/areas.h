#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "apps/common/sharedmemory/sharedmemory.h"

namespace Unit {

/// The unit's memory areas, made and zeroed here and removed with this object. Failures are fatal.
class Areas {
  public:
    Areas();

    /// The first usable byte of each area, in the catalogue's order.
    std::span<std::byte* const> bases() const { return bases_; }

    /// For tests of the product: puts a damaged object under the area's name. This process and whoever has the area
    /// open go on with the sound one; who opens it now meets the damaged one.
    void truncate(std::size_t area, std::size_t bytes);
    /// Writes the size word in front of the area, which every process sees.
    void forgeHeader(std::size_t area, std::uint32_t word);
    /// Size words as they should be. A truncated area stays so until the server starts anew.
    void restoreHeaders();

  private:
    std::vector<std::unique_ptr<SharedMemory>> areas_;
    std::vector<std::byte*> bases_;
};

}  // namespace Unit
