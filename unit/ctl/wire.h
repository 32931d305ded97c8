#pragma once

#include <cstdint>

#include "platform/virtual/instance.h"

namespace Unit {

/// Sends one notice to the unit's server as a client of its own. Throws Problem when that is not possible.
void sendNotice(const Platform::Virtual::Instance& instance, std::uint32_t id);

}  // namespace Unit
