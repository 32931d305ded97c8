#pragma once

#include <cstdint>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"

/// The painter's operations pixel by pixel, in the most literal way: what the fast ones are compared with. It draws
/// into its own pixels, in physical order.
template <typename T>
class Reference {
  public:
    Reference(int width, int height, unsigned rotation, std::vector<T> pixels)
        : width_(width), height_(height), rotation_(rotation), pixels_(std::move(pixels)) {}

    const std::vector<T>& pixels() const { return pixels_; }
    int logicalWidth() const { return (rotation_ & 1) != 0 ? height_ : width_; }
    int logicalHeight() const { return (rotation_ & 1) != 0 ? width_ : height_; }

    Engine::Rect clip;  ///< as it is in force
    Engine::Color foreground = 0;
    Engine::Color background = 0;
    unsigned sampleBits = 8;
    std::vector<Engine::Color> palette;

    void fillRect(Engine::Rect rect, bool blend) {
        for (int y = rect.y; y < rect.y + rect.height; ++y)
            for (int x = rect.x; x < rect.x + rect.width; ++x) {
                T* pixel = at(x, y);
                if (pixel == nullptr) continue;
                if (blend && background >> 24 != 255)
                    mixIn(*pixel, background, background >> 24);
                else
                    *pixel = stored(background);
            }
    }

    void drawImage(const Engine::Image& image, int srcX, int srcY, Engine::Rect dst) {
        for (int y = 0; y < dst.height; ++y)
            for (int x = 0; x < dst.width; ++x) drawPixel(image, srcX + x, srcY + y, dst.x + x, dst.y + y, false);
    }

    void copyImage(const Engine::Image& image, int srcX, int srcY, Engine::Rect dst) {
        for (int y = 0; y < dst.height; ++y)
            for (int x = 0; x < dst.width; ++x)
                if (T* pixel = at(dst.x + x, dst.y + y); pixel != nullptr && inside(image, srcX + x, srcY + y))
                    *pixel = sample<T>(image, srcX + x, srcY + y);
    }

    void drawImageScaled(const Engine::Image& image, Engine::Rect src, Engine::Rect dst) {
        Axis h{src.x, src.width, dst.x, dst.width};
        Axis v{src.y, src.height, dst.y, dst.height};
        if (!h.cut(static_cast<int>(image.width), clip.x, clip.x + clip.width)) return;
        if (!v.cut(static_cast<int>(image.height), clip.y, clip.y + clip.height)) return;
        int sourceY = v.origin;
        int errorY = v.length - 1;
        for (int y = 0; y < v.length; ++y) {
            int sourceX = h.origin;
            int errorX = h.length - 1;
            for (int x = 0; x < h.length; ++x) {
                drawPixel(image, sourceX, sourceY, h.start + x, v.start + y, true);
                for (errorX -= h.source; errorX < 0; errorX += h.length) ++sourceX;
            }
            for (errorY -= v.source; errorY < 0; errorY += v.length) ++sourceY;
        }
    }

    void drawMaskHalo(const Engine::Image& image, int srcX, int srcY, Engine::Rect dst, int radius) {
        for (int y = -radius; y < dst.height + radius; ++y)
            for (int x = -radius; x < dst.width + radius; ++x)
                if (T* pixel = at(dst.x + x, dst.y + y);
                    pixel != nullptr && hasSample(image, srcX, srcY, dst, x, y, radius))
                    *pixel = stored(background);
    }

    /// The pixel at a logical place, by the table of rotations; null outside the clip.
    T* at(int x, int y) {
        if (x < clip.x || y < clip.y || x >= clip.x + clip.width || y >= clip.y + clip.height) return nullptr;
        if (x >= logicalWidth() || y >= logicalHeight()) return nullptr;
        const int places[4] = {y * width_ + x, y + width_ * (height_ - 1 - x),
                               width_ * (height_ - 1 - y) + (width_ - 1 - x), (width_ - 1 - y) + width_ * x};
        return &pixels_[static_cast<std::size_t>(places[rotation_])];
    }

  private:
    /// Source and target along one axis; the cuts keep the scale, in thousandths.
    struct Axis {
        int origin, source, start, length;

        bool cut(int imageSize, int clipStart, int clipEnd) {
            if (start > clipEnd) return false;
            int ratio = length == 0 ? 1 : source * 1000 / length;
            if (ratio == 0) ratio = 1;
            const auto shorten = [&](int over) { source -= static_cast<int>(std::int64_t{ratio} * over / 1000); };
            if (const int over = origin + source - imageSize; over > 0) {
                source -= over;
                length -= static_cast<int>(over * std::int64_t{1000} / ratio);
            }
            if (const int over = clipStart - start; over > 0) {
                origin += static_cast<int>(std::int64_t{ratio} * over / 1000);
                shorten(over);
                start = clipStart;
                length -= over;
            }
            if (const int over = start + length - clipEnd; over > 0) {
                shorten(over);
                length -= over;
            }
            return length > 0 && source > 0;
        }
    };

    static bool inside(const Engine::Image& image, int x, int y) {
        return x >= 0 && y >= 0 && x < static_cast<int>(image.width) && y < static_cast<int>(image.height);
    }
    template <typename S>
    static S sample(const Engine::Image& image, int x, int y) {
        return static_cast<const S*>(image.pixels)[static_cast<unsigned>(y) * image.width + static_cast<unsigned>(x)];
    }

    static bool hasSample(const Engine::Image& image, int srcX, int srcY, Engine::Rect dst, int x, int y, int radius) {
        for (int v = y - radius; v <= y + radius; ++v)
            for (int u = x - radius; u <= x + radius; ++u)
                if (u >= 0 && v >= 0 && u < dst.width && v < dst.height && inside(image, srcX + u, srcY + v) &&
                    sample<std::uint8_t>(image, srcX + u, srcY + v) != 0)
                    return true;
        return false;
    }

    void drawPixel(const Engine::Image& image, int srcX, int srcY, int x, int y, bool scaled) {
        T* pixel = at(x, y);
        if (pixel == nullptr || !inside(image, srcX, srcY)) return;
        switch (image.format) {
            case Engine::Image::Mask8: return drawMask(*pixel, sample<std::uint8_t>(image, srcX, srcY));
            case Engine::Image::Indexed8: return drawIndex(*pixel, sample<std::uint8_t>(image, srcX, srcY), scaled);
            case Engine::Image::Argb8888: {
                const Engine::Color color = sample<std::uint32_t>(image, srcX, srcY);
                return mixIn(*pixel, color, color >> 24);
            }
            default: {
                const unsigned value = sample<std::uint16_t>(image, srcX, srcY);
                if (scaled && value == 0) return;
                mixIn(*pixel, expanded(value), (value & 0x8000) != 0 ? 255 : 128);
            }
        }
    }

    void drawMask(T& pixel, unsigned sample) {
        if constexpr (sizeof(T) == 1) {
            if (sample != 0) pixel = static_cast<T>(sample + index(foreground));
        } else if (foreground >> 24 != 0) {
            const unsigned max = (1U << sampleBits) - 1;
            mixIn(pixel, foreground, max == 0 ? 0 : (sample * 255 / max) & 255);
        }
    }

    void drawIndex(T& pixel, unsigned sample, bool scaled) {
        if (sample >= palette.size() || (scaled && sample == 0)) return;
        if constexpr (sizeof(T) > 1)
            pixel = static_cast<T>(palette[sample]);
        else if (palette[sample] >> 24 != 0)
            pixel = static_cast<T>(sample);
    }

    static Engine::Color expanded(unsigned value) {
        return ((value >> 7 & 248) << 16) | ((value >> 2 & 248) << 8) | (value << 3 & 248);
    }

    void mixIn(T& pixel, Engine::Color color, unsigned weight) {
        if constexpr (sizeof(T) == 1) return;
        const auto channel = [&](Engine::Color target, unsigned shift) {
            return ((color >> shift & 255) * weight + (target >> shift & 255) * (255 - weight)) / 255;
        };
        const Engine::Color target = sizeof(T) == 2 ? expanded(pixel) : pixel;
        const unsigned r = channel(target, 16), g = channel(target, 8), b = channel(target, 0);
        if constexpr (sizeof(T) == 4)
            pixel = (pixel & 0xff000000U) | r << 16 | g << 8 | b;
        else
            pixel = static_cast<T>((pixel & 0x8000) | r >> 3 << 10 | g >> 3 << 5 | b >> 3);
    }

    unsigned index(Engine::Color color) const {
        for (unsigned i = 0; i < palette.size(); ++i)
            if (palette[i] == color) return i;
        return 0;
    }

    T stored(Engine::Color color) const {
        if constexpr (sizeof(T) == 4)
            return color;
        else if constexpr (sizeof(T) == 1)
            return static_cast<T>(index(color));
        else
            return static_cast<T>((color >> 24 == 255 ? 0x8000 : 0) | (color >> 19 & 31) << 10 |
                                  (color >> 11 & 31) << 5 | (color >> 3 & 31));
    }

    int width_;
    int height_;
    unsigned rotation_;
    std::vector<T> pixels_;
};
