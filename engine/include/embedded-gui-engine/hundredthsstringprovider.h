#pragma once

#include "embedded-gui-engine/stringprovider.h"

namespace Engine {

/// Shows a number of hundredths with one decimal, rounded: 488 is 4.9.
class HundredthsStringProvider : public StringProvider<int> {
  public:
    constexpr HundredthsStringProvider(const ValueProvider<int>* provider, std::span<char> storage)
        : StringProvider(nullptr, provider, nullptr, storage) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;
};

}  // namespace Engine
