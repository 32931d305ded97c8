#pragma once

namespace Platform::Virtual {

/// What stands behind a descriptor that the seam opened.
enum class Device { Other, Framebuffer, Input };

/// Remembers which path of the unit a descriptor was opened from. Descriptors from 256 up are not remembered.
void remember(int fd, const char* path);
void forget(int fd);
const char* pathOf(int fd);  ///< "" when the seam did not open it from a path; never null
Device deviceOf(int fd);

}  // namespace Platform::Virtual
