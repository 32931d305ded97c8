#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/virtual/driver.h"

namespace Unit {

/// What one browser has of the display: makes messages of the tiles that have changed since the last one.
///
/// A message is little endian: 32 bits frame number, 16 bits each of width, height, tile size and number of tiles; for
/// each tile 16 bits its index (by rows, from the upper left) and 16 bits its number of words; then its words. A word
/// is a run of equal pixels, by rows within the tile: the high byte its length less 1, the rest 0xRRGGBB. A tile at the
/// right or lower edge is cut to the display. So no tile is longer than its pixels.
class TileDiffer {
  public:
    static constexpr unsigned tile = 16;  ///< pixels, in both directions

    /// The message by which the browser comes to show `picture`; empty when it does already.
    std::string encode(const Platform::Virtual::Picture& picture, std::uint32_t frame);
    /// The browser has nothing any more: the next message holds the whole picture.
    void forget() { shown_.clear(); }

  private:
    struct Box {
        unsigned left, top, right, bottom;
    };

    bool differs(const Platform::Virtual::Picture& picture, const Box& box) const;
    void keep(const Platform::Virtual::Picture& picture, const Box& box);
    void appendHead(std::string& out, std::uint32_t frame) const;
    static void appendTile(std::string& out, std::size_t index, const Platform::Virtual::Picture& picture,
                           const Box& box);

    unsigned width_ = 0;
    unsigned height_ = 0;
    std::vector<std::uint32_t> shown_;  ///< empty: nothing yet
};

}  // namespace Unit
