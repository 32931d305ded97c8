#include "platform/virtual/tape/tiles.h"

#include <linux/fb.h>

#include <algorithm>
#include <cstring>

#include "platform/virtual/tape/event.h"

namespace Platform::Virtual {

std::optional<TiledPicture> TiledPicture::ofMode(std::span<const std::byte> mode) {
    constexpr std::uint32_t largest = 4096;
    fb_var_screeninfo info;
    if (mode.size() != sizeof info) return std::nullopt;
    std::memcpy(&info, mode.data(), sizeof info);
    if (info.xres == 0 || info.yres == 0 || info.xres > largest || info.yres > largest || info.bits_per_pixel != 32)
        return std::nullopt;
    return TiledPicture(info.xres, info.yres);
}

template <typename Row>
void TiledPicture::eachRow(std::size_t tile, Row row) const {
    const std::size_t x = tile % columns() * side, y = tile / columns() * side;
    const std::size_t width = std::min<std::size_t>(side, width_ - x);
    for (std::size_t i = y; i < std::min<std::size_t>(y + side, height_); ++i) row(i * width_ + x, width);
}

void TiledPicture::become(const std::uint32_t* pixels, std::vector<std::byte>& tiles) {
    std::size_t next = 0;  // tiles are told by how many were passed over
    for (std::size_t tile = 0; tile < std::size_t{columns()} * rows(); ++tile) {
        bool same = true;
        eachRow(tile, [&](std::size_t at, std::size_t count) {
            same = same && std::memcmp(&pixels_[at], pixels + at, count * sizeof *pixels) == 0;
        });
        if (same) continue;
        appendNumber(tiles, tile - next);
        next = tile + 1;
        eachRow(tile, [&](std::size_t at, std::size_t count) {
            const auto row = asBytes(pixels + at, count * sizeof *pixels);
            tiles.insert(tiles.end(), row.begin(), row.end());
            std::memcpy(&pixels_[at], pixels + at, row.size());
        });
    }
}

bool TiledPicture::apply(std::span<const std::byte> tiles) {
    std::size_t tile = 0;
    while (!tiles.empty()) {
        std::uint64_t passed = 0;
        if (!takeNumber(tiles, passed) || passed >= std::size_t{columns()} * rows()) return false;
        tile += static_cast<std::size_t>(passed);
        if (tile >= std::size_t{columns()} * rows()) return false;
        bool whole = true;
        eachRow(tile, [&](std::size_t at, std::size_t count) {
            const std::size_t size = count * sizeof pixels_[0];
            whole = whole && tiles.size() >= size;
            if (!whole) return;
            std::memcpy(&pixels_[at], tiles.data(), size);
            tiles = tiles.subspan(size);
        });
        if (!whole) return false;
        ++tile;
    }
    return true;
}

}  // namespace Platform::Virtual
