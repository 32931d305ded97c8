#pragma once

#include <cstdint>

namespace Platform::Virtual {

/// The end of the program's frame: in free run until the next vertical sync, in lockstep until the driver's grant.
void endFrame();

/// The clock in force.
std::int64_t now();

}  // namespace Platform::Virtual
