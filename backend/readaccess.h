#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "backend/guitype.h"

namespace Backend::Variable {

/// Read access to a value that lives somewhere else: in a variable, in a constant or in a memory area.
/// T is bool, int, float, char const*, unsigned int or unsigned char*.
template <typename T>
class IReadAccess {
  public:
    IReadAccess(const IReadAccess&) = delete;
    IReadAccess& operator=(const IReadAccess&) = delete;

    /// The value as the program uses it. Answers false, and leaves `value` alone, when there is none yet.
    virtual bool getValue(T& value) const = 0;
    /// The value as it is stored. No reader of today differs from `getValue`.
    virtual bool getRawValue(T& value) const = 0;
    /// Why the last read failed; 0 for no reason. No source of today fails in any other way than by answering false.
    virtual int readError() const = 0;

  protected:
    constexpr IReadAccess() = default;
    ~IReadAccess() = default;
};

/// A constant, mostly a limit.
template <typename T>
class StaticValue final : public IReadAccess<T> {
  public:
    constexpr explicit StaticValue(const T& value) : value_(value) {}

    bool getValue(T& value) const override {
        value = value_;
        return true;
    }
    bool getRawValue(T& value) const override { return getValue(value); }
    int readError() const override { return 0; }

  private:
    T value_;
};

/// What a `ReadAccess<P, T>` gives: a T, but the address itself for the bytes of a table.
template <typename P, typename T>
struct ReadResult {
    using Type = T;
};

template <typename P>
struct ReadResult<P, GuiType::Array> {
    using Type = P;
};

/// Read access that goes through a pointer of type P.
template <typename P, typename T>
class ReadAccess : public IReadAccess<typename ReadResult<P, T>::Type> {
  public:
    /// The place to read; null while its area is not open.
    virtual P place() const = 0;

  protected:
    constexpr ReadAccess() = default;
    ~ReadAccess() = default;
};

/// Reads at a fixed place in a memory area. The server may write there at any time: a read takes what stands there.
/// Exists for (unsigned int*, unsigned int), a count, and (unsigned char*, GuiType::Array), the address of bytes.
template <typename P, typename T>
class MemoryMappedRead final : public ReadAccess<P, T> {
  public:
    using Result = typename ReadResult<P, T>::Type;

    /// `area` is the word that holds the area's base address, null until the area is open. `offset` is in bytes.
    constexpr MemoryMappedRead(unsigned char* const* area, std::uint32_t offset) : area_(area), offset_(offset) {}

    P place() const override { return *area_ != nullptr ? reinterpret_cast<P>(*area_ + offset_) : nullptr; }
    bool getValue(Result& value) const override {
        const P from = place();
        if (from == nullptr) return false;
        if constexpr (std::is_same_v<T, Result>)
            std::memcpy(&value, from, sizeof value);
        else
            value = from;
        return true;
    }
    bool getRawValue(Result& value) const override { return getValue(value); }
    int readError() const override { return 0; }

  private:
    unsigned char* const* area_;
    std::uint32_t offset_;
};

}  // namespace Backend::Variable
