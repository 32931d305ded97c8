#pragma once

#include <string>

class LinuxFramebuffer;

/// Clears the current buffer of a 32-bit framebuffer and decodes a PNG file straight into its middle: no scaling, no
/// blending, the file's alpha becomes the top byte. The caller pans. A file that cannot be read, is no PNG or is larger
/// than the screen is fatal (std::runtime_error); the buffer may then hold a part of the picture.
void loadPng(LinuxFramebuffer& framebuffer, const std::string& path);
