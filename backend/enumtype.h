#pragma once

#include <cstdint>

#include "embedded-gui-engine/textid.h"

namespace Backend::Variable {

/// One value of an enum and the text that shows it.
struct EnumValue {
    int value;
    Engine::TextId text;
};

/// How an enum counts its values. Only `Table` is in use: what stands in its table is a value, nothing else.
enum class OpMode { Range = 0, Table = 1 };

/// The values of an enum, in the order in which they are offered. The table must outlive this.
template <typename T, OpMode mode>
class EnumType;

template <>
class EnumType<int, OpMode::Table> {
  public:
    static constexpr unsigned int notFound = ~0u;

    /// A bit of `hidden` set: the entry (the first 64 only) may be held and shown, but isn't offered for choice.
    constexpr EnumType(EnumValue const* values, unsigned int count, std::uint64_t hidden = 0)
        : values_(values), count_(count), dense_(counts(values, count)), hidden_(hidden) {}
    EnumType(const EnumType&) = delete;
    EnumType& operator=(const EnumType&) = delete;

    unsigned int count() const { return count_; }
    const EnumValue& entry(unsigned int index) const { return values_[index]; }
    bool offered(unsigned int index) const { return index >= 64 || (hidden_ >> index & 1) == 0; }
    /// The place of a value in the table, or `notFound`.
    unsigned int indexOf(int value) const {
        if (dense_)
            return value >= 0 && static_cast<unsigned int>(value) < count_ ? static_cast<unsigned int>(value)
                                                                           : notFound;
        for (unsigned int i = 0; i < count_; ++i)
            if (values_[i].value == value) return i;
        return notFound;
    }

  private:
    static constexpr bool counts(EnumValue const* values, unsigned int count) {
        for (unsigned int i = 0; i < count; ++i)
            if (values[i].value != static_cast<int>(i)) return false;
        return true;
    }

    EnumValue const* values_;
    unsigned int count_;
    bool dense_;  ///< the values are 0, 1, 2 ...: the place of a value is the value
    std::uint64_t hidden_;
};

using EnumTable = EnumType<int, OpMode::Table>;

}  // namespace Backend::Variable
