#pragma once

#include <linux/fb.h>

#include <cstdint>
#include <string>

#include "unit/ctl/inside/pixels.h"

namespace Board {

/// Colors 0xRRGGBB; the top byte is not shown and always 0.
using Picture = Unit::Pixels;

Picture loadPicture(const std::string& file);
/// The left upper part of `picture` that a display of this size has room for; black around it when the display is
/// larger, with the picture in the middle if `centred`.
Picture onDisplay(const Picture& picture, unsigned width, unsigned height, bool centred);
/// Writes the picture to the console for the host, as PNG in base 64.
void tellPicture(const std::string& name, const Picture& picture);
std::size_t differences(const Picture& one, const Picture& other);

/// The display as another program sees it: what the product shows, and what the driver counts.
class Display {
  public:
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    unsigned width() const { return width_; }
    unsigned height() const { return height_; }
    /// The buffer at the offset that the display shows now.
    Picture shown() const;
    unsigned shownLine() const;
    /// Into the first buffer, as a boot loader leaves it.
    void paint(const Picture& picture);

    /// Since the driver was loaded.
    static long long pans();
    static long long waits();
    static long long passes() { return pans() + waits(); }

  private:
    fb_var_screeninfo info() const;
    std::size_t mappedBytes() const;

    int fd_;
    unsigned width_;
    unsigned height_;
    std::uint32_t* pixels_;
};

}  // namespace Board
