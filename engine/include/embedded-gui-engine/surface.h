#pragma once

#include <cstdint>

namespace Engine {

class Painter;

/// The second face of a framebuffer: a block of pixels with a size, in physical orientation.
class Surface {
  public:
    virtual ~Surface() = default;
    virtual std::uint32_t width() const = 0;   ///< physical pixels, the row stride
    virtual std::uint32_t height() const = 0;  ///< physical pixels
    virtual Painter* painter() = 0;            ///< the same object as a painter

  protected:
    Surface(std::uint32_t width, std::uint32_t height, std::uint32_t sampleBits, void* pixels, std::uint32_t rotation)
        : width_(width), height_(height), sampleBits_(sampleBits), pixels_(pixels), rotation_(rotation) {}
    Surface(const Surface&) = default;
    Surface& operator=(const Surface&) = default;

    std::uint32_t width_;
    std::uint32_t height_;
    std::uint32_t sampleBits_;  ///< depth of a mask's sample
    void* pixels_;
    std::uint32_t rotation_;    ///< quarter turns, 0 to 3
};

}  // namespace Engine
