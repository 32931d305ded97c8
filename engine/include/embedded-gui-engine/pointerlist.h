#pragma once

#include <cstdint>
#include <span>

namespace Engine {

/// A list of pointers in storage that somebody else provides, so that it can be part of constant-initialised objects
/// and never allocates. Neither the storage nor what the pointers name is owned.
template <typename T>
class PointerList {
  public:
    constexpr PointerList() = default;
    /// At most 65535 places of the storage are used.
    constexpr explicit PointerList(std::span<T*> storage)
        : items_(storage.data()),
          capacity_(static_cast<std::uint16_t>(storage.size() < 0xffff ? storage.size() : 0xffff)) {}

    /// False when the list is full; then nothing changes.
    constexpr bool add(T* item) {
        if (count_ == capacity_) return false;
        items_[count_++] = item;
        return true;
    }
    constexpr bool contains(const T* item) const {
        for (const T* own : *this)
            if (own == item) return true;
        return false;
    }
    constexpr void clear() { count_ = 0; }
    /// Keeps the first `count` items.
    constexpr void truncate(int count) {
        if (count >= 0 && count < count_) count_ = static_cast<std::uint16_t>(count);
    }
    constexpr bool isEmpty() const { return count_ == 0; }
    constexpr int size() const { return count_; }
    constexpr int capacity() const { return capacity_; }
    constexpr T* operator[](int index) const { return items_[index]; }
    constexpr T* const* begin() const { return items_; }
    constexpr T* const* end() const { return items_ + count_; }

  private:
    T** items_ = nullptr;
    std::uint16_t capacity_ = 0;
    std::uint16_t count_ = 0;
};

}  // namespace Engine
