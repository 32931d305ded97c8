#pragma once

#include "embedded-gui-engine/variablebase.h"

namespace Engine {

class StringVariable : public VariableBase<const char*> {
  public:
    /// Bytes of storage, the terminator included.
    virtual int size() const = 0;

  protected:
    constexpr StringVariable() = default;
    ~StringVariable() = default;
};

}  // namespace Engine
