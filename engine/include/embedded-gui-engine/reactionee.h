#pragma once

namespace Engine {

/// What reactions are attached to. The base answers true for isEnabled; no heap, no destructor.
class Reactionee {
  public:
    virtual bool isEnabled() const { return true; }
    virtual const char* objectName() const = 0;
    virtual bool isPage() const { return false; }
    virtual bool isWidget() const { return false; }

  protected:
    constexpr Reactionee() = default;
    ~Reactionee() = default;
};

}  // namespace Engine
