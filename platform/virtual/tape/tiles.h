#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace Platform::Virtual {

/// A picture of 32 bits a pixel that is told as the tiles in which it differs from the one before. It starts black.
class TiledPicture {
  public:
    TiledPicture(unsigned width, unsigned height)
        : width_(width), height_(height), pixels_(std::size_t{width} * height) {}

    /// Black, of the display mode (fb_var_screeninfo) in `mode`. Nothing when that is none of 32 bits a pixel, or of a
    /// size that no display has.
    static std::optional<TiledPicture> ofMode(std::span<const std::byte> mode);

    unsigned width() const { return width_; }
    unsigned height() const { return height_; }
    const std::vector<std::uint32_t>& pixels() const { return pixels_; }

    /// Becomes `pixels`; `tiles` gets what apply() needs to do the same.
    void become(const std::uint32_t* pixels, std::vector<std::byte>& tiles);
    /// False when the tiles are not of such a picture.
    bool apply(std::span<const std::byte> tiles);

  private:
    static constexpr unsigned side = 16;

    unsigned columns() const { return (width_ + side - 1) / side; }
    unsigned rows() const { return (height_ + side - 1) / side; }
    /// Calls `row(first pixel, count)` for each row of the tile.
    template <typename Row>
    void eachRow(std::size_t tile, Row row) const;

    unsigned width_;
    unsigned height_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace Platform::Virtual
