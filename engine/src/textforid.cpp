#include "embedded-gui-engine/textforid.h"

#include "embedded-gui-engine/hooks.h"

namespace Engine {

const char* textForId(TextId id) {
    const char* text = hooks().textForId != nullptr ? hooks().textForId(id) : nullptr;
    return text != nullptr ? text : "";
}

}  // namespace Engine
