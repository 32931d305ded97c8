#pragma once

#include "platform/virtual/instance.h"

namespace Platform::Virtual {

/// The framebuffer device's ioctls on the instance's control block. 0, or -1 with errno.
int displayIoctl(Instance& instance, unsigned long request, void* argument);

/// Waits for the vertical blank: the next 60th of a second, or in lockstep the driver's next step. -1 with EINTR
/// when a signal arrived.
int waitForBlank(Instance& instance);

}  // namespace Platform::Virtual
