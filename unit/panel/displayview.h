#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/virtual/driver.h"

namespace Unit {

/// The unit's display, seen through a read-only mapping of its framebuffer. A look is a few atomic words; the picture
/// is copied only when the product has turned the page since. The product makes no call for it and waits for nothing.
class DisplayView {
  public:
    /// `driver` must outlive this.
    explicit DisplayView(const Platform::Virtual::Driver& driver) : driver_(driver) {}
    ~DisplayView();
    DisplayView(const DisplayView&) = delete;
    DisplayView& operator=(const DisplayView&) = delete;

    /// Takes the shown picture when there is a newer one. False when there is none, or when the product turned the
    /// page again and again meanwhile: then the next call takes it.
    bool refresh();
    /// The last one taken, of 32 bits a pixel; empty before the first.
    const Platform::Virtual::Picture& picture() const { return picture_; }
    /// Counts the pictures taken.
    std::uint32_t frame() const { return frame_; }

  private:
    bool mapBuffers(std::size_t size);

    const Platform::Virtual::Driver& driver_;
    const std::byte* buffers_ = nullptr;
    std::size_t size_ = 0;
    Platform::Virtual::Picture picture_;
    std::uint32_t pansSeen_ = 0;
    std::uint32_t frame_ = 0;
};

}  // namespace Unit
