#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

class LinuxFramebuffer;

namespace ScreenCapture {

/// The longest name that a capture may be given, in bytes.
inline constexpr std::size_t longestName = 127;

/// The file of a capture of that name and local time; nothing, and a log line, for a name that is too long or could
/// lead to another folder.
std::optional<std::string> path(std::string_view name, const std::tm& time);

/// Writes the picture that is shown now, as it lies in its buffer, with the buffer's top byte as alpha. A file that
/// cannot be written is fatal (std::runtime_error).
void write(const LinuxFramebuffer& framebuffer, const std::string& path);

}  // namespace ScreenCapture
