#pragma once

#include "embedded-gui-engine/condition.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// Left is the provider's value, right the reference.
enum class CompareOperator : int { Equal = 0, Greater = 1, Less = 2, GreaterEqual = 3, LessEqual = 4, NotEqual = 5 };

/// Compares a provider's value with a constant: numbers by value (float exactly), false below true, strings by bytes.
/// A null string counts as "", a null provider or an unknown operator makes the condition false.
template <typename T>
class Compare : public Condition {
  public:
    constexpr Compare(const ValueProvider<T>* provider, T reference, CompareOperator op = CompareOperator::Equal)
        : provider_(provider), reference_(reference), operator_(op) {}

    bool evaluate() override;

  private:
    const ValueProvider<T>* provider_;
    T reference_;
    CompareOperator operator_;
};

extern template class Compare<bool>;
extern template class Compare<int>;
extern template class Compare<float>;
extern template class Compare<const char*>;

}  // namespace Engine
