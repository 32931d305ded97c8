#pragma once

#include <algorithm>

#include "engine/src/raster/kernels.h"

namespace Engine::Raster {

// Low and long: the target is written in long runs, and both it and the block stay in the first cache.
constexpr std::ptrdiff_t blockWidth = 256;
constexpr std::ptrdiff_t blockRows = 8;

/// Calls visit(part of the target, u, v) for parts of at most that size.
template <std::ptrdiff_t maxWidth, std::ptrdiff_t maxRows, typename T, typename Visit>
void eachPart(const Target<T>& target, Visit visit) {
    for (std::ptrdiff_t v = 0; v < target.rows; v += maxRows)
        for (std::ptrdiff_t u = 0; u < target.width; u += maxWidth)
            visit(Target<T>{target.first + v * target.rowStep + u, target.rowStep, std::min(maxWidth, target.width - u),
                            std::min(maxRows, target.rows - v)},
                  u, v);
}

/// Calls draw(target, source) with a source that walks along image rows: the given one where it does so already, else
/// the parts of a copy turned block by block.
template <typename T, typename S, typename Draw>
void alongRows(const Target<T>& target, const Source<S>& source, Draw draw) {
    if (source.step == 1 || source.step == -1) return draw(joined(target, source), source);
    const auto turn = moves<S>().turn;
    alignas(32) S block[blockWidth * blockRows];
    eachPart<blockWidth, blockRows>(target, [&](const Target<T>& part, std::ptrdiff_t u, std::ptrdiff_t v) {
        turn(block, blockWidth, {source.first + u * source.step + v * source.rowStep, source.step, source.rowStep},
             part.width, part.rows);
        draw(part, Source<S>{block, 1, blockWidth});
    });
}

}  // namespace Engine::Raster
