#pragma once

// The kernels of 32-bit targets over vector registers. The including source has defined, in an unnamed namespace of
// Engine::Raster, the operations on its registers and the types of the pieces that a row is cut into:
//
//   Wide, Quad, Pair, Single   count; load, loadReversed (p[0], p[-1], ...), store; loadHalves, loadHalvesReversed,
//                              which widen each value to 32 bits; loadWeights, loadWeightsReversed, which load bytes
//                              as spread() gives them. Wide may be Quad.
//   mix(source, target, weight)  bytewise floor((source * weight + target * (255 - weight)) / 255)
//   spread(values)               the low byte of each pixel as the weight of its colour bytes, 0 for the top byte
//   spreadTop(pixels)            the same of the top byte
//   Blend<Register>              mix() with a constant source and weight
//   allSet(pixels, bits)       whether all of these bits are set in all pixels
//   repeated, bitAnd, bitOr, bitAndNot, shiftLeft, shiftRight, equal: on 32-bit lanes
//
// A row ends with a Quad, a Pair and a Single at the most, so glyphs and icons are never finished pixel by pixel.

#include "engine/src/raster/scalarkernels.h"

namespace Engine::Raster {
namespace {

/// Rows from this width on begin with smaller pieces until the target is aligned: a store that crosses a cache line
/// costs two.
constexpr std::ptrdiff_t alignedWidth = 64;

/// Wide pieces in one pass of a row's loop. Short kernels gain from two, long ones lose.
enum class Passes : std::uint8_t { Single, Double };

/// Calls piece(Piece{}, u) for the pieces of a row.
template <Passes passes = Passes::Single, typename EachPiece>
[[gnu::always_inline]] inline void eachPiece(const std::uint32_t* row, std::ptrdiff_t width, EachPiece piece) {
    std::ptrdiff_t u = 0;
    const auto one = [&](auto size) {
        piece(size, u);
        u += decltype(size)::count;
    };
    if (width >= alignedWidth) {
        const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(row) / sizeof *row;
        if ((place & 1) != 0) one(Single{});
        if (((place + 1) & 2) != 0) one(Pair{});
        if constexpr (!std::is_same_v<Wide, Quad>)
            if (((place + 3) & 4) != 0) one(Quad{});
    }
    if constexpr (passes == Passes::Double)
        while (u + 2 * Wide::count <= width) {
            one(Wide{});
            one(Wide{});
        }
    while (u + Wide::count <= width) one(Wide{});
    if constexpr (!std::is_same_v<Wide, Quad>)
        if (u + Quad::count <= width) one(Quad{});
    if (u + Pair::count <= width) one(Pair{});
    if (u < width) one(Single{});
}

// How a source is walked; the step is known when a row begins.
struct Forwards {
    template <typename Piece, typename S>
    [[gnu::always_inline]] static auto load(Piece, const S* row, std::ptrdiff_t u) {
        if constexpr (sizeof(S) == 1)
            return Piece::loadWeights(row + u);
        else if constexpr (sizeof(S) == 2)
            return Piece::loadHalves(row + u);
        else
            return Piece::load(row + u);
    }
};
struct Backwards {
    template <typename Piece, typename S>
    [[gnu::always_inline]] static auto load(Piece, const S* row, std::ptrdiff_t u) {
        if constexpr (sizeof(S) == 1)
            return Piece::loadWeightsReversed(row - u);
        else if constexpr (sizeof(S) == 2)
            return Piece::loadHalvesReversed(row - u);
        else
            return Piece::loadReversed(row - u);
    }
};

/// Fetches the beginning of a row to come. Rows of narrow targets lie too far apart for the machine to foresee. The
/// place may lie behind the pixels: it is not read.
[[gnu::always_inline]] inline void expectRow(const std::uint32_t* row, std::ptrdiff_t ahead) {
    const auto place = reinterpret_cast<std::uintptr_t>(row) + static_cast<std::uintptr_t>(ahead) * sizeof *row;
    __builtin_prefetch(reinterpret_cast<const void*>(place), 1);
    __builtin_prefetch(reinterpret_cast<const void*>(place + 64), 1);
}

/// Calls piece(Piece, target, source values) for all pieces of all rows.
template <typename Direction, typename S, typename EachPiece>
[[gnu::always_inline]] inline void walkRows(const Target<std::uint32_t>& target, const Source<S>& source,
                                            EachPiece piece) {
    const Target<std::uint32_t> to = target;
    std::uint32_t* row = to.first;
    const S* from = source.first;
    for (std::ptrdiff_t v = 0; v < to.rows; ++v, row += to.rowStep, from += source.rowStep) {
        expectRow(row, 4 * to.rowStep);
        eachPiece(row, to.width,
                  [&](auto size, std::ptrdiff_t u) { piece(size, row + u, Direction::load(size, from, u)); });
    }
}

template <typename S, typename EachPiece>
[[gnu::always_inline]] inline void walk(const Target<std::uint32_t>& target, const Source<S>& source, EachPiece piece) {
    if (source.step == 1)
        walkRows<Forwards>(target, source, piece);
    else
        walkRows<Backwards>(target, source, piece);
}

void blendVector(const Target<std::uint32_t>& target, Color color) {
    const Target<std::uint32_t> to = target;
    const Blend<Wide::Register> wide(color);
    const Blend<Quad::Register> narrow(color);
    std::uint32_t* row = to.first;
    for (std::ptrdiff_t v = 0; v < to.rows; ++v, row += to.rowStep)
        eachPiece<Passes::Double>(row, to.width, [&](auto size, std::ptrdiff_t u) {
            using Piece = decltype(size);
            if constexpr (Piece::count == Wide::count)
                Piece::store(row + u, wide.over(Piece::load(row + u)));
            else
                Piece::store(row + u, narrow.over(Piece::load(row + u)));
        });
}

void maskVector(const Target<std::uint32_t>& target, const Source<std::uint8_t>& source, Color color) {
    walk(target, source, [color](auto size, std::uint32_t* to, auto weights) {
        using Piece = decltype(size);
        using Register = typename Piece::Register;
        Piece::store(to, mix(repeated<Register>(color), Piece::load(to), weights));
    });
}

/// Pictures have large opaque parts, which are worth a test. The lanes beyond a Pair or a Single are clear and so never
/// pass it.
void argbVector(const Target<std::uint32_t>& target, const Source<std::uint32_t>& source) {
    walk(target, source, [](auto size, std::uint32_t* to, auto colors) {
        using Piece = decltype(size);
        const auto top = repeated<typename Piece::Register>(0xff000000U);
        if (allSet(colors, top))
            Piece::store(to, bitOr(bitAnd(Piece::load(to), top), bitAndNot(colors, top)));
        else
            Piece::store(to, mix(colors, Piece::load(to), spreadTop(colors)));
    });
}

/// The colours of 1:5:5:5 values, without their flag.
template <typename Register>
Register expand1555(Register values) {
    const Register r = bitAnd(shiftLeft<9>(values), repeated<Register>(0xf80000));
    const Register g = bitAnd(shiftLeft<6>(values), repeated<Register>(0xf800));
    const Register b = bitAnd(shiftLeft<3>(values), repeated<Register>(0xf8));
    return bitOr(bitOr(r, g), b);
}

template <Zero zero>
void fixedRows(const Target<std::uint32_t>& target, const Source<std::uint16_t>& source) {
    walk(target, source, [](auto size, std::uint32_t* to, auto values) {
        using Piece = decltype(size);
        using Register = typename Piece::Register;
        const Register clear = equal(bitAnd(values, repeated<Register>(0x8000)), repeated<Register>(0));
        Register weight = bitAndNot(repeated<Register>(255), bitAnd(clear, repeated<Register>(127)));
        if constexpr (zero == Zero::Skipped) weight = bitAndNot(weight, equal(values, repeated<Register>(0)));
        Piece::store(to, mix(expand1555(values), Piece::load(to), spread(weight)));
    });
}

void fixedVector(const Target<std::uint32_t>& target, const Source<std::uint16_t>& source, Zero zero) {
    if (zero == Zero::Skipped)
        fixedRows<Zero::Skipped>(target, source);
    else
        fixedRows<Zero::Drawn>(target, source);
}

void stampVector(const Target<std::uint32_t>& target, const Source<std::uint8_t>& source, std::uint32_t value) {
    walk(target, source, [value](auto size, std::uint32_t* to, auto weights) {
        using Piece = decltype(size);
        using Register = typename Piece::Register;
        const Register empty = equal(weights, repeated<Register>(0));
        Piece::store(to, bitOr(bitAnd(Piece::load(to), empty), bitAndNot(repeated<Register>(value), empty)));
    });
}

void copyVector(const Target<std::uint32_t>& target, const Source<std::uint32_t>& source) {
    if (source.step == 1) return copyScalar(target, source);
    walkRows<Backwards>(target, source,
                        [](auto size, std::uint32_t* to, auto pixels) { decltype(size)::store(to, pixels); });
}

/// Plain code where the compiler vectorises it as well, vectors for the rest.
template <typename T>
constexpr Kernels<T> vectorKernels() {
    Kernels<T> kernels = scalarKernels<T>();
    if constexpr (sizeof(T) == 4) {
        kernels.blend = blendVector;
        kernels.mask = maskVector;
        kernels.argb = argbVector;
        kernels.fixed = fixedVector;
        kernels.stamp = stampVector;
        kernels.copy = copyVector;
    }
    return kernels;
}

/// Turns in squares of `side` pixels: square(out, outStep, from, step) stores side rows, row k holding from[k] of the
/// columns, which lie `step` apart. The last squares overlap the ones before, so that no rest is left.
template <int side, typename S, typename Square>
[[gnu::always_inline]] inline void turnSquares(S* out, std::ptrdiff_t outStep, const Source<S>& source,
                                               std::ptrdiff_t width, std::ptrdiff_t rows, Square square) {
    if (width < side || rows < side || (source.rowStep != 1 && source.rowStep != -1))
        return turnScalar(out, outStep, source, width, rows);
    const Source<S> from = source;
    for (std::ptrdiff_t v = 0; v < rows; v += side) {
        v = v + side > rows ? rows - side : v;
        const std::ptrdiff_t lowest = from.rowStep > 0 ? v : -(v + side - 1);
        S* const first = from.rowStep > 0 ? out + v * outStep : out + (v + side - 1) * outStep;
        for (std::ptrdiff_t u = 0; u < width; u += side) {
            u = u + side > width ? width - side : u;
            square(first + u, from.rowStep > 0 ? outStep : -outStep, from.first + u * from.step + lowest, from.step);
        }
    }
}

}  // namespace
}  // namespace Engine::Raster
