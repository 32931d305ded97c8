#pragma once

#include "backend/access.h"
#include "backend/limitconfig.h"
#include "embedded-gui-engine/stringvariable.h"

namespace Backend::Variable {

template <typename T>
class String;

/// A text in storage of a fixed size.
///
/// A write of a text that doesn't fit, or whose length in bytes lies outside the limits, is refused and changes
/// nothing. A text from the server is cut at the end of its storage, never inside a UTF-8 character.
template <>
class String<char const*> : public Access<char const*>, public LimitConfig<int>, public Engine::StringVariable {
  public:
    /// Bytes of storage, the terminator included; 0 without storage.
    int size() const override;
    /// Null is refused.
    bool setValue(char const* text) override;
    const char* name() const override;
    char const* value() const override;
    int flags() const override;

    /// A text from the server: it ends at its terminator or after `fieldSize` bytes. The change callback does not run;
    /// the next sync pass tells it. False when nothing changes.
    bool receive(char const* text, unsigned int fieldSize);

  protected:
    constexpr explicit String(const char* name, Slot slot = noSlot, char* buffer = nullptr, unsigned int size = 0)
        : Access<char const*>(name, slot, buffer, size) {}
    ~String() = default;
};

}  // namespace Backend::Variable
