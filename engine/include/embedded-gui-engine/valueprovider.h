#pragma once

namespace Engine {

/// Root of everything that can be asked for a value.
class ValueProviderBase {
  protected:
    constexpr ValueProviderBase() = default;
    ~ValueProviderBase() = default;
};

/// Anything that can be asked for a value of type T. `value` is a plain read: no system call, no allocation.
template <typename T>
class ValueProvider : public ValueProviderBase {
  public:
    virtual const char* name() const = 0;
    virtual T value() const = 0;

  protected:
    constexpr ValueProvider() = default;
    ~ValueProvider() = default;
};

}  // namespace Engine
