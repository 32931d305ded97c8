#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/assetc/fontmaker.h"
#include "tools/assetc/imagedata.h"

/// A picture that finished fonts and images are drawn on, 0xRRGGBB a pixel. What lies outside is cut.
class Canvas {
  public:
    Canvas(int width, int height, std::uint32_t ground);

    int width() const { return width_; }
    int height() const { return height_; }
    std::uint32_t pixel(int x, int y) const { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }

    void blend(int x, int y, std::uint32_t colour, int coverage);
    void fill(int x, int y, int width, int height, std::uint32_t colour);
    /// `scale` is the size of one image pixel on the canvas.
    void draw(const ImageData& image, int x, int y, int scale, std::uint32_t ink);
    /// Draws a text in UTF-8 from the line's top left corner; returns the pen's x behind it.
    int draw(const FontData& font, const std::string& text, int x, int y, std::uint32_t ink);

    /// Throws InputError if the file cannot be written.
    void writePng(const std::filesystem::path& path) const;

  private:
    int width_, height_;
    std::vector<std::uint32_t> pixels_;
};
