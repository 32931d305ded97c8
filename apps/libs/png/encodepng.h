#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The PNG file of a picture of `width` x `height` pixels 0xAARRGGBB, rows from the top without gaps. Alpha is left
/// out: what a display shows is opaque. Empty when the picture is empty or libpng refuses it.
std::vector<std::byte> encodePng(const std::uint32_t* pixels, unsigned width, unsigned height);
