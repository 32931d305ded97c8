#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Support {

/// A block of pixels between two guards. A write outside the block is found by intact().
template <typename T>
class GuardedPixels {
  public:
    GuardedPixels(std::size_t width, std::size_t height, T initial)
        : width_(width), height_(height), words_(2 * guardSize + width * height, guardWord) {
        std::fill_n(data(), width * height, initial);
    }

    T* data() { return words_.data() + guardSize; }
    const T* data() const { return words_.data() + guardSize; }
    std::size_t width() const { return width_; }
    std::size_t height() const { return height_; }
    std::size_t size() const { return width_ * height_; }
    T at(std::size_t x, std::size_t y) const { return data()[y * width_ + x]; }

    bool intact() const {
        const auto isGuard = [](T word) { return word == guardWord; };
        return std::all_of(words_.begin(), words_.begin() + guardSize, isGuard) &&
               std::all_of(words_.end() - guardSize, words_.end(), isGuard);
    }

    friend bool operator==(const GuardedPixels&, const GuardedPixels&) = default;

  private:
    static constexpr std::ptrdiff_t guardSize = 4096;
    static constexpr T guardWord = static_cast<T>(0xa5c3e197U);

    std::size_t width_;
    std::size_t height_;
    std::vector<T> words_;
};

}  // namespace Support
