#pragma once

#include <span>

#include "unit/panel/web/webserver.h"

namespace Unit {

/// The page, as the build has bundled it into the program.
std::span<const WebFile> pageFiles();

}  // namespace Unit
