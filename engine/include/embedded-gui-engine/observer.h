#pragma once

#include <cstdint>

namespace Engine {

/// Whoever is told of a change. Observers are static objects of the model and are never destroyed through this.
class Observer {
  public:
    /// The arguments are handed through; most observers ignore them.
    virtual void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) = 0;

  protected:
    constexpr Observer() = default;
    ~Observer() = default;
};

}  // namespace Engine
