#include "unit/panel/tilediffer.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace Unit {

using Platform::Virtual::Picture;

namespace {

static_assert(std::endian::native == std::endian::little, "messages are written as the words lie in memory");

constexpr std::size_t countAt = 10;
constexpr std::uint32_t longestRun = 256;
static_assert(TileDiffer::tile * TileDiffer::tile <= longestRun);

template <typename Word>
void append(std::string& out, Word word) {
    char bytes[sizeof word];
    std::memcpy(bytes, &word, sizeof word);
    out.append(bytes, sizeof bytes);
}

void put16(std::string& out, std::size_t at, std::size_t value) {
    const auto word = static_cast<std::uint16_t>(value);
    std::memcpy(out.data() + at, &word, sizeof word);
}

class Runs {
  public:
    explicit Runs(std::string& out) : out_(out) {}
    ~Runs() { flush(); }
    Runs(const Runs&) = delete;
    Runs& operator=(const Runs&) = delete;

    void add(std::uint32_t pixel) {
        const std::uint32_t color = pixel & 0xffffff;
        if (length_ > 0 && color == color_) {
            ++length_;
            return;
        }
        flush();
        color_ = color;
        length_ = 1;
    }

  private:
    void flush() {
        if (length_ > 0) append(out_, (length_ - 1) << 24 | color_);
        length_ = 0;
    }

    std::string& out_;
    std::uint32_t color_ = 0;
    std::uint32_t length_ = 0;
};

}  // namespace

bool TileDiffer::differs(const Picture& picture, const Box& box) const {
    const std::size_t length = (box.right - box.left) * sizeof(std::uint32_t);
    for (unsigned y = box.top; y < box.bottom; ++y) {
        const std::size_t at = std::size_t{y} * width_ + box.left;
        if (std::memcmp(&shown_[at], &picture.pixels[at], length) != 0) return true;
    }
    return false;
}

void TileDiffer::keep(const Picture& picture, const Box& box) {
    for (unsigned y = box.top; y < box.bottom; ++y) {
        const std::size_t at = std::size_t{y} * width_ + box.left;
        std::copy_n(&picture.pixels[at], box.right - box.left, &shown_[at]);
    }
}

std::string TileDiffer::encode(const Picture& picture, std::uint32_t frame) {
    if (picture.pixels.empty()) return "";
    const bool whole = shown_.empty() || picture.width != width_ || picture.height != height_;
    if (whole) {
        width_ = picture.width;
        height_ = picture.height;
        shown_.resize(picture.pixels.size());
    }
    std::string out;
    std::size_t count = 0, index = 0;
    for (unsigned top = 0; top < height_; top += tile) {
        for (unsigned left = 0; left < width_; left += tile, ++index) {
            const Box box = {left, top, std::min(left + tile, width_), std::min(top + tile, height_)};
            if (!whole && !differs(picture, box)) continue;
            keep(picture, box);
            if (count++ == 0) appendHead(out, frame);
            appendTile(out, index, picture, box);
        }
    }
    if (count > 0) put16(out, countAt, count);
    return out;
}

/// The number of tiles is not known yet.
void TileDiffer::appendHead(std::string& out, std::uint32_t frame) const {
    append(out, frame);
    for (const unsigned word : {width_, height_, tile, 0U}) append(out, static_cast<std::uint16_t>(word));
    static_assert(countAt == sizeof frame + 3 * sizeof(std::uint16_t));
}

void TileDiffer::appendTile(std::string& out, std::size_t index, const Picture& picture, const Box& box) {
    append(out, static_cast<std::uint16_t>(index));
    const std::size_t lengthAt = out.size();
    append(out, std::uint16_t{0});
    {
        Runs runs(out);
        for (unsigned y = box.top; y < box.bottom; ++y)
            for (unsigned x = box.left; x < box.right; ++x)
                runs.add(picture.pixels[std::size_t{y} * picture.width + x]);
    }
    put16(out, lengthAt, (out.size() - lengthAt - sizeof(std::uint16_t)) / sizeof(std::uint32_t));
}

}  // namespace Unit
