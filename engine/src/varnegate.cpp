#include "embedded-gui-engine/varnegate.h"

#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/hooks.h"

namespace Engine {

bool VarNegate::execute() {
    if (variable_ == nullptr) {
        engineLog(0, __FILE_NAME__, __LINE__, "VarNegate: Variable is 0.");
        return false;
    }
    return variable_->toggle();
}

}  // namespace Engine
