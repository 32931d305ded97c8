#include "embedded-gui-engine/varsettovalue.h"

#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/trace.h"

namespace Engine {

template <typename Variable>
bool VarSetToValue<Variable>::execute() {
    if (variable_ == nullptr) {
        engineLog(0, __FILE_NAME__, __LINE__, "VarSetToValue: Variable is 0.");
        return false;
    }
    Trace::instance().varToValueBy(variable_->name(), value_, name());
    return setVariableChecked(*variable_, value_);
}

template class VarSetToValue<BoolVariable>;
template class VarSetToValue<EnumVariable>;
template class VarSetToValue<ScalarVariable<int>>;
template class VarSetToValue<ScalarVariable<float>>;
template class VarSetToValue<StringVariable>;

}  // namespace Engine
