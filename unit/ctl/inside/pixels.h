#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Unit {

/// A picture of 0xAARRGGBB, rows from the top without gaps.
struct Pixels {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint32_t> colors;

    friend bool operator==(const Pixels&, const Pixels&) = default;
};

/// Throws Problem.
void writePixels(const Pixels& pixels, const std::string& file);
/// Empty when the file is missing or no picture.
Pixels readPixels(const std::string& file);

/// Where the two differ in red, over `before` darkened. Empty when they are of different sizes.
Pixels differenceOf(const Pixels& before, const Pixels& after);

}  // namespace Unit
