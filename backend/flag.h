#pragma once

#include "backend/access.h"
#include "embedded-gui-engine/boolvariable.h"

namespace Backend::Variable {

template <typename T>
class Flag;

/// A flag. Both values always exist and are enabled. All flags show the same two texts.
template <>
class Flag<bool> : public Access<bool>, public Engine::BoolVariable {
  public:
    virtual int size() const;
    bool setValue(bool value) override;
    bool toggle() override;
    Engine::TextId textKey(bool value) const override;
    const char* name() const override;
    bool value() const override;
    int properties(bool value) const override;
    int flags() const override;

    /// The texts of false and true; no text until this is called.
    static void configTexts(Engine::TextId off, Engine::TextId on);

  protected:
    constexpr explicit Flag(const char* name, Slot slot = noSlot) : Access<bool>(name, slot) {}
    ~Flag() = default;
};

}  // namespace Backend::Variable
