#pragma once

#include <string>

#include "platform/virtual/instance.h"

namespace Unit {

/// Asks the supervisor of a running unit. Throws Problem, also when no such unit runs.
std::string askUnit(const Platform::Virtual::Place& place, const std::string& request, int milliseconds = 60'000);

}  // namespace Unit
