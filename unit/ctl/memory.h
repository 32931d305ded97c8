#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/virtual/instance.h"
#include "unit/server/store.h"

namespace Unit {

/// A running unit's memory areas, seen by a process that neither makes nor removes them.
class Memory {
  public:
    /// Throws Problem when an area is missing or not of the size that the catalogue tells.
    explicit Memory(const Platform::Virtual::Instance& instance);
    ~Memory();
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    Store& store() { return *store_; }
    /// Usable bytes. Throws Problem when there is no such area or the bytes lie beyond its end.
    std::span<const std::byte> bytes(std::string_view area, std::size_t offset, std::size_t length) const;

  private:
    struct Mapping {
        void* start;
        std::size_t size;
    };

    std::vector<Mapping> mappings_;
    std::unique_ptr<Store> store_;
};

/// The value as `get` prints it: as Store::show, but floats in the shortest form that reads back the same.
std::string bareValue(const Store& store, const Cell& cell);
/// The name of an enum's value; empty for other kinds and for values without a name.
std::string valueName(const Store& store, const Cell& cell);
const char* kindName(Catalogue::Kind kind);

}  // namespace Unit
