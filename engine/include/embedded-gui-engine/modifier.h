#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>

#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/scalarvariable.h"
#include "embedded-gui-engine/stringprovider.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// Pushes a provider's value into one property of its target whenever a variable below the provider changes. It keeps
/// no old value and undoes nothing: the property is a pure function of the variables. The setter must compare first,
/// since an update with an unchanged value is the common case. The link phase calls update once where the first value
/// does not come with the variables' first notification.
///
/// `Argument` is what the setter takes when that is not the provider's type, as of Widget::setX; a number is then held
/// within its range.
template <typename Target, typename Value, typename Argument = Value>
class Modifier : public Observer {
  public:
    /// Any member function of the target or of one of its bases, virtual or not.
    using Setter = void (Target::*)(Argument);

    /// The target must not be null. Without a provider nothing is ever pushed.
    constexpr Modifier(Target* target, Setter setter, const ValueProvider<Value>* provider)
        : target_(target), setter_(setter), provider_(provider) {}

    // The undefined behaviour sanitizer mistakes a setter of the target's second base for a call on a wrong object.
    [[gnu::no_sanitize("vptr")]] void update(std::intptr_t = 0, std::intptr_t = 0) override {
        if (provider_ != nullptr) (target_->*setter_)(argument(provider_->value()));
    }

  private:
    static Argument argument(Value value) {
        if constexpr (std::same_as<Argument, Value>) {
            return value;
        } else {
            using Range = std::numeric_limits<Argument>;
            return static_cast<Argument>(std::clamp<Value>(value, Range::min(), Range::max()));
        }
    }

    Target* target_;
    Setter setter_;
    const ValueProvider<Value>* provider_;
};

/// A modifier that pushes the opposite.
template <typename Target>
class InverseModifier : public Observer {
  public:
    using Setter = void (Target::*)(bool);

    /// As Modifier's.
    constexpr InverseModifier(Target* target, Setter setter, const ValueProvider<bool>* provider)
        : target_(target), setter_(setter), provider_(provider) {}

    // The undefined behaviour sanitizer mistakes a setter of the target's second base for a call on a wrong object.
    [[gnu::no_sanitize("vptr")]] void update(std::intptr_t = 0, std::intptr_t = 0) override {
        if (provider_ != nullptr) (target_->*setter_)(!provider_->value());
    }

  private:
    Target* target_;
    Setter setter_;
    const ValueProvider<bool>* provider_;
};

enum class Limits : bool { Keep = false, FollowVariable = true };

/// Shows a variable's value in a level, and if asked its limits. T is int or float.
template <typename Level, typename T>
class MinMaxValueModifier : public Observer {
  public:
    /// The level must not be null. Without a variable nothing is ever pushed.
    constexpr MinMaxValueModifier(Level* level, const ScalarVariable<T>* variable, Limits limits = Limits::Keep)
        : level_(level), variable_(variable), withLimits_(limits == Limits::FollowVariable) {}

    void update(std::intptr_t = 0, std::intptr_t = 0) override {
        if (variable_ == nullptr) return;
        if (withLimits_) {
            level_->setMinimum(static_cast<float>(variable_->min()));
            level_->setMaximum(static_cast<float>(variable_->max()));
        }
        level_->setValue(variable_->value());
    }

  private:
    Level* level_;
    const ScalarVariable<T>* variable_;
    bool withLimits_;
};

/// Something that follows one row of a table; the row comes from a Modifier<ArrayModifier, int>.
class ArrayModifier {
  public:
    virtual void setRow(int row) = 0;

  protected:
    constexpr ArrayModifier() = default;
    ~ArrayModifier() = default;
};

/// Makes one cell of a table the value of a string provider. `Array` is the backend's table; V is const char*, int or
/// float.
template <typename Array, typename V>
class ArrayModifierFormat : public ArrayModifier {
  public:
    /// The provider must not be null. Without an array nothing is ever pushed.
    constexpr ArrayModifierFormat(const Array* array, std::uint32_t column, StringProvider<V>* provider)
        : array_(array), column_(column), provider_(provider) {}

    /// A negative row, and with a log line one outside the table, keeps the previous cell.
    void setRow(int row) override {
        if (row < 0 || array_ == nullptr) return;
        const ValueProvider<V>* cell = array_->template getVariable<V>(column_, static_cast<unsigned>(row));
        if (cell == nullptr) {
            engineLog(0, __FILE_NAME__, __LINE__, "Couldn't get variable from array %s, column %u, row %i.",
                      array_->name(), column_, row);
            return;
        }
        provider_->setProvider(cell);
        provider_->update();
    }

  private:
    const Array* array_;
    std::uint32_t column_;
    StringProvider<V>* provider_;
};

}  // namespace Engine
