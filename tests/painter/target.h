#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "tests/support/guardedpixels.h"

/// A small framebuffer over guarded pixels, shown as text: one string a row, one letter a value. Values without a
/// letter show as '?', so an unforeseen write never passes.
template <typename T>
class Target {
  public:
    Target(unsigned width, unsigned height, unsigned rotation = 0, T initial = 0, unsigned sampleBits = 8)
        : pixels(width, height, initial), painter(width, height, sampleBits, pixels.data(), rotation) {
        letters[initial] = '.';
    }
    ~Target() { EXPECT_TRUE(pixels.intact()) << "something was written outside the surface"; }

    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    std::vector<std::string> picture() const {
        std::vector<std::string> rows(pixels.height());
        for (std::size_t y = 0; y < pixels.height(); ++y)
            for (std::size_t x = 0; x < pixels.width(); ++x) {
                const auto letter = letters.find(pixels.at(x, y));
                rows[y] += letter != letters.end() ? letter->second : '?';
            }
        return rows;
    }
    T at(std::size_t x, std::size_t y) const { return pixels.at(x, y); }

    std::map<T, char> letters;
    Support::GuardedPixels<T> pixels;
    Engine::Framebuffer<T> painter;
};

using Picture = std::vector<std::string>;

/// An image over a container's elements. The container must outlive it.
template <typename Container>
Engine::Image imageOf(const Container& pixels, unsigned width, Engine::Image::Format format) {
    const auto height = width == 0 ? 0 : static_cast<unsigned>(pixels.size() / width);
    return {static_cast<unsigned>(pixels.size() * sizeof(pixels[0])), width, height, format, pixels.data()};
}
