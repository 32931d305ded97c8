#pragma once

namespace Platform::Virtual {

/// Opens the display's memory, a file of the instance that holds all its buffers; -1 with errno on failure.
int openDisplay(int flags);

/// The framebuffer requests of the kernel on a descriptor of openDisplay; -1 with errno ENOTTY for any other.
int displayIoctl(unsigned long request, void* argument);

}  // namespace Platform::Virtual
