#pragma once

#include <cstdint>

namespace Engine {

/// Descriptor of a block of pixels: constant assets and the contents of surfaces alike. Rows are contiguous, the
/// stride is the width. The pixels are not owned.
struct Image {
    enum Format : std::uint32_t {
        Indexed8 = 0,      ///< 8 bits: index into the target's palette
        Argb8888 = 1,      ///< 0xAARRGGBB with true alpha
        Argb8888Alt = 2,   ///< treated exactly as Argb8888
        Argb1555 = 3,      ///< bit 15 opaque, then 5 bits each of red, green, blue
        Argb1555Alt = 4,   ///< treated exactly as Argb1555
        Mask8 = 5          ///< 8 bits of coverage; the colour is the painter's foreground
    };

    std::uint32_t dataSize = 0;  ///< bytes at `pixels`
    std::uint32_t width = 0;     ///< pixels
    std::uint32_t height = 0;    ///< pixels
    std::uint32_t format = 0;    ///< one of Format
    const void* pixels = nullptr;
};

}  // namespace Engine
