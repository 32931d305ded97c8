#pragma once

#include <cstring>
#include <type_traits>

#include "backend/nameprovider.h"
#include "backend/readaccess.h"
#include "backend/subject.h"

namespace Backend::Variable {

/// Equal byte by byte: a NaN equals itself, 0.0 and -0.0 differ. So every change of the stored bits is a change.
template <typename T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

namespace internal {

/// Storage of a value of type T.
template <typename T, typename Access>
class Base {
  public:
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;

  protected:
    constexpr Base() = default;
    ~Base() = default;

    T stored() const { return value_; }
    /// False when nothing changes.
    bool store(T value) {
        if (sameBits(value_, value)) return false;
        value_ = value;
        return true;
    }

  private:
    T value_{};
};

/// Storage of a text: bytes that somebody else owns. Without storage the text is empty and cannot be set.
template <typename Access>
class Base<char const*, Access> {
  public:
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;

    /// `size` bytes at `buffer`, the terminator included; the bytes stay the caller's. Cells of one column may pass the
    /// size of the whole column block: `toNext`, the distance to the next cell, then keeps the text inside its own
    /// cell.
    void configStorage(char const* buffer, unsigned int size, unsigned int toNext = 0) {
        text_ = const_cast<char*>(buffer);
        size_ = toNext != 0 && toNext < size ? toNext : size;
    }

  protected:
    constexpr Base() = default;
    constexpr Base(char* buffer, unsigned int size) : text_(buffer), size_(size) {}
    ~Base() = default;

    char const* stored() const { return text_ != nullptr ? text_ : ""; }
    unsigned int storageSize() const { return text_ != nullptr ? size_ : 0; }
    /// Stores `length` bytes and a terminator. False when nothing changes. `length` is below the storage size.
    bool store(char const* text, unsigned int length) {
        if (std::memcmp(text_, text, length) == 0 && text_[length] == '\0') return false;
        std::memmove(text_, text, length);
        text_[length] = '\0';
        return true;
    }

  private:
    char* text_ = nullptr;
    unsigned int size_ = 0;
};

}  // namespace internal

/// The backend face of a variable: its value, who hears of it, its name. T is bool, int, float or char const*.
template <typename T>
class Access : public internal::Base<T, Access<T>>, public IReadAccess<T>, public Subject, public NameProvider {
  public:
    bool getValue(T& value) const override {
        value = this->stored();
        return true;
    }
    bool getRawValue(T& value) const override { return getValue(value); }

    /// A value from the server. It is taken as it comes, whatever the limits say, and told by the next sync pass; the
    /// change callback does not run. False when nothing changes.
    bool receive(T value) requires(!std::is_pointer_v<T>) {
        if (!this->store(value)) return false;
        mark();
        return true;
    }

  protected:
    template <typename... Storage>
    constexpr explicit Access(const char* name, Slot slot, Storage... storage)
        : internal::Base<T, Access<T>>(storage...), Subject(slot), NameProvider(name) {}
    ~Access() = default;

    /// A write by the program that has passed the checks.
    void write(T value) requires(!std::is_pointer_v<T>) {
        if (this->store(value)) changed();
    }
};

/// Bits of `flags` of any variable.
enum Flags : int {
    FlagsPending = 1,  ///< a value from the server waits for the sync pass
    FlagsLimited = 2   ///< limits or a value table are configured
};

}  // namespace Backend::Variable
