#pragma once

#include "embedded-gui-engine/stringprovider.h"

namespace Engine {

/// Shows a length, given in metres, as a person reads it from a scale: three significant figures, or feet and inches.
/// What is 1000 of them or more is infinite, and what is negative or no number is shown as nothing.
class LengthStringProvider : public StringProvider<float> {
  public:
    enum class System : bool {
        Metres,  ///< 1.83, 12.5, 125
        Feet     ///< 6'02", and from 100 feet on 125'
    };

    constexpr LengthStringProvider(System system, const ValueProvider<float>* provider, std::span<char> storage)
        : StringProvider(nullptr, provider, nullptr, storage), system_(system) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    System system_;
};

}  // namespace Engine
