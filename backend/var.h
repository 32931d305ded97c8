#pragma once

#include "backend/array.h"
#include "backend/enum.h"
#include "backend/flag.h"
#include "backend/guitype.h"
#include "backend/scalar.h"
#include "backend/string.h"

namespace Backend {

/// The variables of the product, one object a value: static, constant-initialised, never destroyed. The names given to
/// them must have static storage. The engine holds their `Engine::...Variable` base.
template <typename T>
class Var;

template <>
class Var<int> final : public Variable::Scalar<int> {
  public:
    constexpr explicit Var(const char* name, Variable::Slot slot = Variable::noSlot,
                           const Variable::IReadAccess<int>* minimum = nullptr,
                           const Variable::IReadAccess<int>* maximum = nullptr)
        : Scalar(name, slot, minimum, maximum) {}
    int readError() const override { return 0; }
};

template <>
class Var<float> final : public Variable::Scalar<float> {
  public:
    constexpr explicit Var(const char* name, Variable::Slot slot = Variable::noSlot,
                           const Variable::IReadAccess<float>* minimum = nullptr,
                           const Variable::IReadAccess<float>* maximum = nullptr)
        : Scalar(name, slot, minimum, maximum) {}
    int readError() const override { return 0; }
};

template <>
class Var<bool> final : public Variable::Flag<bool> {
  public:
    constexpr explicit Var(const char* name, Variable::Slot slot = Variable::noSlot) : Flag(name, slot) {}
    int readError() const override { return 0; }
};

template <>
class Var<GuiType::CEnum<int>> final : public Variable::Enum<int> {
  public:
    constexpr explicit Var(const char* name, Variable::Slot slot = Variable::noSlot,
                           Variable::EnumTable const* type = nullptr, Variable::AvailableFlag* availability = nullptr)
        : Enum(name, slot, type, availability) {}
    int readError() const override { return 0; }
};

template <>
class Var<char const*> final : public Variable::String<char const*> {
  public:
    constexpr explicit Var(const char* name, Variable::Slot slot = Variable::noSlot, char* buffer = nullptr,
                           unsigned int size = 0)
        : String(name, slot, buffer, size) {}
    int readError() const override { return 0; }
};

/// A table. As a number it is its count of live records, and cannot be written.
template <>
class Var<GuiType::Array> final : public Variable::Array, public Engine::VariableBase<int> {
  public:
    constexpr Var(const char* name, unsigned int columns, unsigned int rows, const ArrayType& type,
                  Variable::Slot slot = Variable::noSlot, Variable::IReadAccess<unsigned int> const* counter = nullptr,
                  Variable::AvailableFlag* availability = nullptr)
        : Array(name, columns, rows, type, slot, counter, availability) {}
    const char* name() const override { return providedName(); }
    int value() const override { return static_cast<int>(rowDimension()); }
    int flags() const override { return isSync() ? 0 : Variable::FlagsPending; }
    bool setValue(int /*value*/) override { return false; }
};

using BoolVar = Var<bool>;
using IntVar = Var<int>;
using EnumVar = Var<GuiType::CEnum<int>>;
using FloatVar = Var<float>;
using StringVar = Var<char const*>;
using ArrayVar = Var<GuiType::Array>;

}  // namespace Backend
