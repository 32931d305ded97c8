#pragma once

#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/variablebase.h"

namespace Engine {

class EnumVariable : public VariableBase<int> {
  public:
    /// Number of values.
    virtual int size() const = 0;
    /// Property bits of a value.
    virtual int properties(int value) const = 0;
    virtual TextId textKey(int value) const = 0;
    virtual bool increment(int step, bool wrap) = 0;

  protected:
    constexpr EnumVariable() = default;
    ~EnumVariable() = default;
};

}  // namespace Engine
