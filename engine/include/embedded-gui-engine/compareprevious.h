#pragma once

#include <cstdint>

#include "embedded-gui-engine/condition.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// True when the value differs from that of the previous evaluation; the first evaluation is always false. It tells
/// of changes between evaluations, not between notifications. A null provider makes it false.
template <typename T>
class ComparePrevious : public Condition {
  public:
    /// Any change counts.
    constexpr explicit ComparePrevious(const ValueProvider<T>* provider)
        : provider_(provider), threshold_(0), useThreshold_(false) {}
    /// A positive threshold asks for a rise, a negative one for a fall of at least that much; 0 is always true.
    constexpr ComparePrevious(const ValueProvider<T>* provider, std::int32_t threshold)
        : provider_(provider), threshold_(threshold), useThreshold_(true) {}

    bool evaluate() override;

  private:
    const ValueProvider<T>* provider_;
    std::int32_t threshold_;
    T previous_{};
    bool useThreshold_;
    bool initialised_ = false;
};

/// Keeps a hash instead of the text: two texts of the same hash count as unchanged.
template <>
class ComparePrevious<const char*> : public Condition {
  public:
    constexpr explicit ComparePrevious(const ValueProvider<const char*>* provider) : provider_(provider) {}

    bool evaluate() override;

    /// From 0, for each byte: the byte XOR the hash rotated left by 5.
    static std::uint32_t hash(const char* text);

  private:
    const ValueProvider<const char*>* provider_;
    std::uint32_t previousHash_ = 0;
    bool initialised_ = false;
};

extern template class ComparePrevious<bool>;
extern template class ComparePrevious<int>;

}  // namespace Engine
