#include "engine/src/raster/isa.h"

#if defined(TERN_RASTER_X86)

#include "engine/src/raster/x86.h"

namespace Engine::Raster {
namespace {

using Wide = Quad;

}  // namespace
}  // namespace Engine::Raster

#include "engine/src/raster/vectorkernels.h"

namespace Engine::Raster {
namespace {

template <typename T>
void fillVector(const Target<T>& target, T value) {
    const Target<T> to = target;
    const __m128i pattern = patternOf(value);
    const auto bytes = static_cast<std::size_t>(to.width) * sizeof(T);
    for (std::ptrdiff_t v = 0; v < to.rows; ++v) {
        char* p = reinterpret_cast<char*>(to.first + v * to.rowStep);
        char* const end = p + bytes;
        for (; end - p >= 32; p += 32) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p), pattern);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16), pattern);
        }
        fillShort(p, static_cast<std::size_t>(end - p), pattern);
    }
}

template <typename S>
void turnVector(S* out, std::ptrdiff_t outStep, const Source<S>& source, std::ptrdiff_t width, std::ptrdiff_t rows) {
    if constexpr (sizeof(S) == 1)
        turnSquares<8>(out, outStep, source, width, rows, turnEightBytes);
    else if constexpr (sizeof(S) == 2)
        turnSquares<8>(out, outStep, source, width, rows, turnEightHalves);
    else
        turnSquares<4>(out, outStep, source, width, rows, turnFour);
}

template <typename T>
constexpr Kernels<T> set = [] {
    Kernels<T> kernels = vectorKernels<T>();
    kernels.fill = fillVector<T>;
    return kernels;
}();
template <typename S>
constexpr Moves<S> moveSet = {turnVector<S>, pickScalar<S>};

}  // namespace

template <>
const Kernels<std::uint8_t>& sse2Kernels() {
    return set<std::uint8_t>;
}
template <>
const Kernels<std::uint16_t>& sse2Kernels() {
    return set<std::uint16_t>;
}
template <>
const Kernels<std::uint32_t>& sse2Kernels() {
    return set<std::uint32_t>;
}
template <>
const Moves<std::uint8_t>& sse2Moves() {
    return moveSet<std::uint8_t>;
}
template <>
const Moves<std::uint16_t>& sse2Moves() {
    return moveSet<std::uint16_t>;
}
template <>
const Moves<std::uint32_t>& sse2Moves() {
    return moveSet<std::uint32_t>;
}

}  // namespace Engine::Raster

#endif
