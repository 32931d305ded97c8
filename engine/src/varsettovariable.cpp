#include "embedded-gui-engine/varsettovariable.h"

#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/trace.h"

namespace Engine {

template <typename Variable>
bool VarSetToVariable<Variable>::execute() {
    if (destination_ == nullptr || source_ == nullptr) {
        engineLog(0, __FILE_NAME__, __LINE__, "VarSetToVariable: Source and/or destination is 0.");
        return false;
    }
    const auto value = source_->value();
    Trace::instance().varToVariable(destination_->name(), source_->name(), value);
    return setVariableChecked(*destination_, value);
}

template class VarSetToVariable<BoolVariable>;
template class VarSetToVariable<EnumVariable>;
template class VarSetToVariable<ScalarVariable<int>>;
template class VarSetToVariable<ScalarVariable<float>>;
template class VarSetToVariable<StringVariable>;

}  // namespace Engine
