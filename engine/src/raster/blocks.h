#pragma once

#include <algorithm>

#include "engine/src/raster/kernels.h"

namespace Engine::Raster {

/// How a target is cut into blocks.
struct BlockShape {
    std::ptrdiff_t width;
    std::ptrdiff_t rows;
};

constexpr std::ptrdiff_t blockSize = 2048;  ///< pixels: with its sources it stays in the first cache
constexpr std::ptrdiff_t longestRun = 256;

/// Low and long, so that the target is written in long runs; as high as a narrow target leaves room for.
constexpr BlockShape blockShape(std::ptrdiff_t targetWidth) {
    const std::ptrdiff_t width = std::clamp<std::ptrdiff_t>((targetWidth + 7) / 8 * 8, 8, longestRun);
    return {width, blockSize / width};
}

/// Calls visit(part of the target, u, v) for parts of at most that shape.
template <typename T, typename Visit>
void eachPart(const Target<T>& target, const BlockShape& shape, Visit visit) {
    for (std::ptrdiff_t v = 0; v < target.rows; v += shape.rows)
        for (std::ptrdiff_t u = 0; u < target.width; u += shape.width)
            visit(Target<T>{target.first + v * target.rowStep + u, target.rowStep,
                            std::min(shape.width, target.width - u), std::min(shape.rows, target.rows - v)},
                  u, v);
}

/// Calls draw(target, source) with a source that walks along image rows: the given one where it does so already, else
/// the parts of a copy turned block by block.
template <typename T, typename S, typename Draw>
void alongRows(const Target<T>& target, const Source<S>& source, Draw draw) {
    if (source.step == 1 || source.step == -1) return draw(joined(target, source), source);
    const auto turn = moves<S>().turn;
    const BlockShape shape = blockShape(target.width);
    alignas(32) S block[blockSize];
    eachPart(target, shape, [&](const Target<T>& part, std::ptrdiff_t u, std::ptrdiff_t v) {
        turn(block, shape.width, {source.first + u * source.step + v * source.rowStep, source.step, source.rowStep},
             part.width, part.rows);
        draw(part, Source<S>{block, 1, shape.width});
    });
}

}  // namespace Engine::Raster
