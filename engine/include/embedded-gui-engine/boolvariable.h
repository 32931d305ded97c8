#pragma once

#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/variablebase.h"

namespace Engine {

class BoolVariable : public VariableBase<bool> {
  public:
    virtual bool toggle() = 0;
    /// Property bits of a value.
    virtual int properties(bool value) const = 0;
    virtual TextId textKey(bool value) const = 0;

  protected:
    constexpr BoolVariable() = default;
    ~BoolVariable() = default;
};

}  // namespace Engine
