#pragma once

#include <cstdint>

#include "embedded-gui-engine/color.h"

namespace Engine::Raster {

/// floor(v / 255), exact for v up to 65279: t + t/256 reaches the next multiple of 256 exactly when t-1 reaches the
/// next multiple of 255. Written in 16 bits, so that loops over it vectorise.
constexpr std::uint16_t divide255(std::uint16_t v) {
    const auto t = static_cast<std::uint16_t>(v + 1);
    return static_cast<std::uint16_t>(static_cast<std::uint16_t>(t + (t >> 8)) >> 8);
}

/// (source * weight + target * (255 - weight)) / 255; all of them 0 to 255.
constexpr std::uint16_t mix(std::uint16_t source, std::uint16_t target, std::uint16_t weight) {
    return divide255(static_cast<std::uint16_t>(source * weight + target * (255 - weight)));
}

constexpr std::uint16_t red(Color color) {
    return (color >> 16) & 255;
}
constexpr std::uint16_t green(Color color) {
    return (color >> 8) & 255;
}
constexpr std::uint16_t blue(Color color) {
    return color & 255;
}
constexpr std::uint16_t alpha(Color color) {
    return static_cast<std::uint16_t>(color >> 24);
}

/// Eight-bit channels of a 1:5:5:5 pixel. The low three bits are zero, not replicated.
constexpr std::uint16_t red1555(std::uint16_t pixel) {
    return (pixel >> 7) & 248;
}
constexpr std::uint16_t green1555(std::uint16_t pixel) {
    return (pixel >> 2) & 248;
}
constexpr std::uint16_t blue1555(std::uint16_t pixel) {
    return static_cast<std::uint16_t>(pixel << 3) & 248;
}

constexpr std::uint16_t join1555(std::uint16_t r, std::uint16_t g, std::uint16_t b) {
    return static_cast<std::uint16_t>(((r & 248) << 7) | ((g & 248) << 2) | (b >> 3));
}

/// The opaque flag is set when the colour's alpha is 255.
constexpr std::uint16_t to1555(Color color) {
    return static_cast<std::uint16_t>(join1555(red(color), green(color), blue(color)) |
                                      (alpha(color) == 255 ? 0x8000 : 0));
}

constexpr Color joinColor(std::uint16_t r, std::uint16_t g, std::uint16_t b) {
    return (Color{r} << 16) | (Color{g} << 8) | b;
}

/// The colour of a 1:5:5:5 pixel with the weight that its flag stands for: 255 opaque, 128 otherwise.
constexpr Color weighted1555(std::uint16_t pixel) {
    return joinColor(red1555(pixel), green1555(pixel), blue1555(pixel)) |
           ((pixel & 0x8000) != 0 ? 0xff000000U : 0x80000000U);
}

/// What the kernels must know of a target pixel that holds colours: how to mix one into it. What is not red, green or
/// blue stays as it was.
template <typename T>
struct Pixel;

template <>
struct Pixel<std::uint32_t> {
    static constexpr std::uint32_t blend(std::uint32_t pixel, Color color, std::uint16_t weight) {
        return (pixel & 0xff000000U) |
               joinColor(mix(red(color), red(pixel), weight), mix(green(color), green(pixel), weight),
                         mix(blue(color), blue(pixel), weight));
    }
    static constexpr std::uint32_t stored(Color color) { return color; }
};

template <>
struct Pixel<std::uint16_t> {
    static constexpr std::uint16_t blend(std::uint16_t pixel, Color color, std::uint16_t weight) {
        return static_cast<std::uint16_t>((pixel & 0x8000) | join1555(mix(red(color), red1555(pixel), weight),
                                                                      mix(green(color), green1555(pixel), weight),
                                                                      mix(blue(color), blue1555(pixel), weight)));
    }
    static constexpr std::uint16_t stored(Color color) { return static_cast<std::uint16_t>(color); }
};

}  // namespace Engine::Raster
