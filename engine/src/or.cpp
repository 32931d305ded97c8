#include "embedded-gui-engine/or.h"

#include <algorithm>

namespace Engine {

bool Or::evaluate() {
    return std::any_of(conditions_, conditions_ + count_,
                       [](Condition* condition) { return condition != nullptr && condition->evaluate(); });
}

}  // namespace Engine
