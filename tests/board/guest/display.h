#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Board {

constexpr unsigned displayWidth = 240, displayHeight = 400;

/// Pixels 0xRRGGBB of the whole display, rows from the top without gaps; the top byte is not shown and always 0.
using Picture = std::vector<std::uint32_t>;

/// Of a PNG file of the display's size or less, in the middle of black.
Picture loadPicture(const std::string& file);
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
    int fd_;
    std::uint32_t* pixels_;
};

}  // namespace Board
