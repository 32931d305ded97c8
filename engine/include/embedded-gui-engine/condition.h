#pragma once

namespace Engine {

class Condition {
  public:
    virtual bool evaluate() = 0;

  protected:
    constexpr Condition() = default;
    ~Condition() = default;
};

}  // namespace Engine
