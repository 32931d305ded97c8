#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Support {

/// A picture of 0xAARRGGBB pixels, rows from the top without gaps.
struct Picture32 {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint32_t> pixels;

    friend bool operator==(const Picture32&, const Picture32&) = default;
};

/// Compares a picture, alpha included, with the golden image `path`, a PNG file named from the root of the repository
/// ("tests/painter/golden/shapes.png"). A missing golden fails. On failure the actual picture and the difference (what
/// differs in red, the rest faded) are written below the build folder, and the message says where.
///
/// With the environment variable TERN_ACCEPT_GOLDENS set to 1 the picture is written as the new golden instead.
testing::AssertionResult matchesGolden(const Picture32& actual, const std::string& path);

}  // namespace Support
