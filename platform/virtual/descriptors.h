#pragma once

#include <cstdint>

namespace Platform::Virtual {

/// What stands behind a descriptor that the seam opened.
enum class Device { Other, Framebuffer, Input };

/// Remembers which path of the unit a descriptor was opened from. Descriptors from 256 up are not remembered.
void remember(int fd, const char* path);
void forget(int fd);
const char* pathOf(int fd);  ///< "" when the seam did not open it from a path; never null
Device deviceOf(int fd);
/// Remembers what a wait says about a descriptor, so that its path can be found again by that.
void rememberData(int fd, std::uint64_t data);
const char* pathByData(std::uint64_t data);  ///< "" when unknown; never null
/// Whether a path of the unit is that of the socket at which the server is met.
bool isServerSocket(const char* path);

}  // namespace Platform::Virtual
