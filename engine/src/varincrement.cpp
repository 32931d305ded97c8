#include "embedded-gui-engine/varincrement.h"

#include "embedded-gui-engine/hooks.h"

namespace Engine {

template <typename Scalar>
bool VarIncrement<Scalar>::execute() {
    if (variable_ == nullptr) {
        engineLog(0, __FILE_NAME__, __LINE__, "VarIncrement: Variable is 0.");
        return false;
    }
    return variable_->increment(step_, (flags_ & Wrap) != 0);
}

template class VarIncrement<ScalarVariable<int>>;
template class VarIncrement<ScalarVariable<float>>;
template class VarDecrement<ScalarVariable<int>>;
template class VarDecrement<ScalarVariable<float>>;

}  // namespace Engine
