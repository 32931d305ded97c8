#pragma once

#include <cstddef>
#include <cstdint>

#include "embedded-gui-engine/color.h"
#include "engine/src/raster/plane.h"

namespace Engine::Raster {

/// What a source value of 0 means: a pixel like any other, or none.
enum class Zero : std::uint8_t { Drawn, Skipped };

struct Palette {
    const Color* colors;
    std::int32_t count;
};

/// Which pixels of a source row a scaled row shows. Each eight of them have a base, from which on their places are
/// told; where it is `near`, all lie within eight pixels that may be read as a whole.
struct PickPlan {
    static constexpr int maxWidth = 256;

    std::int32_t width = 0;
    std::int32_t places[maxWidth];
    std::int32_t bases[maxWidth / 8];
    bool near[maxWidth / 8];

    /// Turns `places`, which rise or fall throughout and lie in 0 to `size` - 1, into places from the bases on.
    void settle(std::ptrdiff_t size);
};

/// Moves of pixels that know nothing of colours.
template <typename S>
struct Moves {
    /// out[v * outStep + u] = source at (u, v); for sources that walk down the columns of an image.
    void (*turn)(S* out, std::ptrdiff_t outStep, const Source<S>& source, std::ptrdiff_t width, std::ptrdiff_t rows);
    /// out[u] = row[bases[u / 8] + places[u]].
    void (*pick)(S* out, const S* row, const PickPlan& plan);
};

/// The row kernels of one target depth. Every set gives the same pixels; they differ in speed only. An index target
/// (unsigned char) has no colours to mix: its blend, argb and fixed are null.
template <typename T>
struct Kernels {
    void (*fill)(const Target<T>& target, T value);
    /// Mixes the colour in by its own alpha.
    void (*blend)(const Target<T>& target, Color color);
    /// Mixes the colour in by each sample, 0 to 255. Index targets get colour + sample where the sample is not 0.
    void (*mask)(const Target<T>& target, const Source<std::uint8_t>& source, Color color);
    void (*argb)(const Target<T>& target, const Source<std::uint32_t>& source);
    void (*fixed)(const Target<T>& target, const Source<std::uint16_t>& source, Zero zero);
    /// Indices without an entry are skipped; index targets also skip entries of alpha 0.
    void (*indexed)(const Target<T>& target, const Source<std::uint8_t>& source, const Palette& palette, Zero zero);
    /// `value` wherever the sample is not 0.
    void (*stamp)(const Target<T>& target, const Source<std::uint8_t>& source, T value);
    void (*copy)(const Target<T>& target, const Source<T>& source);
};

/// The sets in ascending order of speed; a set that the machine cannot run is absent.
enum class Isa : std::uint8_t { Scalar, Sse2, Avx2, Neon };

/// Null when this machine, or this build, does not have the set.
template <typename T>
const Kernels<T>* kernelsOf(Isa isa);
template <typename S>
const Moves<S>* movesOf(Isa isa);

/// The fastest set of this machine.
Isa bestIsa();

/// movesOf(bestIsa()), looked up once.
template <typename S>
const Moves<S>& moves();

}  // namespace Engine::Raster
