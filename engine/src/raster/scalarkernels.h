#pragma once

// The kernels in plain code: the reference that every other set must equal, and what the compiler can vectorise by
// itself. Included by each set's source and compiled there for that set's machine, hence the unnamed namespace.

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "engine/src/raster/kernels.h"
#include "engine/src/raster/pixel.h"

namespace Engine::Raster {
namespace {

/// Calls pixel(target, source value) throughout. The step is a constant in each loop so that both vectorise.
template <typename T, typename S, typename EachPixel>
void eachPixel(const Target<T>& target, const Source<S>& source, EachPixel pixel) {
    const Target<T> to = target;
    const S* from = source.first;
    T* row = to.first;
    for (std::ptrdiff_t v = 0; v < to.rows; ++v, row += to.rowStep, from += source.rowStep) {
        if (source.step == 1)
            for (std::ptrdiff_t u = 0; u < to.width; ++u) pixel(row[u], from[u]);
        else
            for (std::ptrdiff_t u = 0; u < to.width; ++u) pixel(row[u], from[-u]);
    }
}

template <typename T>
void fillScalar(const Target<T>& target, T value) {
    const Target<T> to = target;
    for (std::ptrdiff_t v = 0; v < to.rows; ++v) std::fill_n(to.first + v * to.rowStep, to.width, value);
}

template <typename T>
void blendScalar(const Target<T>& target, Color color) {
    const Target<T> to = target;
    const std::uint16_t weight = alpha(color);
    for (std::ptrdiff_t v = 0; v < to.rows; ++v) {
        T* row = to.first + v * to.rowStep;
        for (std::ptrdiff_t u = 0; u < to.width; ++u) row[u] = Pixel<T>::blend(row[u], color, weight);
    }
}

template <typename T>
void maskScalar(const Target<T>& target, const Source<std::uint8_t>& source, Color color) {
    if constexpr (std::is_same_v<T, std::uint8_t>)
        eachPixel(target, source, [color](T& pixel, std::uint8_t sample) {
            pixel = sample != 0 ? static_cast<T>(sample + color) : pixel;
        });
    else
        eachPixel(target, source,
                  [color](T& pixel, std::uint8_t sample) { pixel = Pixel<T>::blend(pixel, color, sample); });
}

template <typename T>
void argbScalar(const Target<T>& target, const Source<std::uint32_t>& source) {
    eachPixel(target, source, [](T& pixel, Color color) { pixel = Pixel<T>::blend(pixel, color, alpha(color)); });
}

template <typename T>
void fixedScalar(const Target<T>& target, const Source<std::uint16_t>& source, Zero zero) {
    const bool skipsZero = zero == Zero::Skipped;
    eachPixel(target, source, [skipsZero](T& pixel, std::uint16_t value) {
        const Color color = weighted1555(value);
        const T mixed = Pixel<T>::blend(pixel, color, alpha(color));
        pixel = skipsZero && value == 0 ? pixel : mixed;
    });
}

template <typename T>
void indexedScalar(const Target<T>& target, const Source<std::uint8_t>& source, const Palette& palette, Zero zero) {
    const Palette colors = palette;
    const bool skipsZero = zero == Zero::Skipped;
    eachPixel(target, source, [=](T& pixel, std::uint8_t index) {
        if (index >= colors.count || (skipsZero && index == 0)) return;
        if constexpr (std::is_same_v<T, std::uint8_t>)
            pixel = alpha(colors.colors[index]) != 0 ? index : pixel;
        else
            pixel = Pixel<T>::stored(colors.colors[index]);
    });
}

template <typename T>
void stampScalar(const Target<T>& target, const Source<std::uint8_t>& source, T value) {
    eachPixel(target, source, [value](T& pixel, std::uint8_t sample) { pixel = sample != 0 ? value : pixel; });
}

template <typename T>
void copyScalar(const Target<T>& target, const Source<T>& source) {
    if (source.step != 1) return eachPixel(target, source, [](T& pixel, T value) { pixel = value; });
    for (std::ptrdiff_t v = 0; v < target.rows; ++v)
        std::memmove(target.first + v * target.rowStep, source.first + v * source.rowStep,
                     static_cast<std::size_t>(target.width) * sizeof(T));
}

template <typename S>
void turnScalar(S* out, std::ptrdiff_t outStep, const Source<S>& source, std::ptrdiff_t width, std::ptrdiff_t rows) {
    const Source<S> from = source;
    for (std::ptrdiff_t u = 0; u < width; ++u)
        for (std::ptrdiff_t v = 0; v < rows; ++v) out[v * outStep + u] = from.first[u * from.step + v * from.rowStep];
}

template <typename S>
void pickScalar(S* out, const S* row, const PickPlan& plan) {
    for (std::int32_t u = 0; u < plan.width; ++u) out[u] = row[plan.bases[u / 8] + plan.places[u]];
}

template <typename T>
constexpr Kernels<T> scalarKernels() {
    Kernels<T> kernels{};
    kernels.fill = fillScalar<T>;
    kernels.mask = maskScalar<T>;
    kernels.indexed = indexedScalar<T>;
    kernels.stamp = stampScalar<T>;
    kernels.copy = copyScalar<T>;
    if constexpr (!std::is_same_v<T, std::uint8_t>) {
        kernels.blend = blendScalar<T>;
        kernels.argb = argbScalar<T>;
        kernels.fixed = fixedScalar<T>;
    }
    return kernels;
}

template <typename S>
constexpr Moves<S> scalarMoves() {
    return {turnScalar<S>, pickScalar<S>};
}

}  // namespace
}  // namespace Engine::Raster
