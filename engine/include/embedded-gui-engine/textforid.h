#pragma once

#include "embedded-gui-engine/textid.h"

namespace Engine {

/// The text of a key in the current language; "" while no text table is there. Never null. The string is of static
/// duration but of one language: look it up anew instead of keeping it.
const char* textForId(TextId id);

}  // namespace Engine
