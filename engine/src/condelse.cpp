#include "embedded-gui-engine/condelse.h"

namespace Engine {

bool CondElse::evaluate() {
    return true;
}

}  // namespace Engine
