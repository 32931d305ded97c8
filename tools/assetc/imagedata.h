#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The pixel formats that images are stored in. The numbers are those of the engine's image records.
enum class PixelFormat : std::uint32_t { Argb8888 = 1, Mask8 = 5 };

/// A finished image. Pixels are rows from the top without padding: one byte of coverage, or the bytes B, G, R, A.
struct ImageData {
    std::string name;  ///< as in the icon table, for instance "link-search-a"
    PixelFormat format = PixelFormat::Mask8;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};
