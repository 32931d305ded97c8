#include "engine/src/raster/isa.h"

#if defined(TERN_RASTER_X86)

#include "engine/src/raster/x86.h"

namespace Engine::Raster {
namespace {

struct Wide {
    using Register = __m256i;
    static constexpr int count = 8;

    static Register load(const std::uint32_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    // The loads exchange the halves: cheaper than a permutation across them.
    static Register loadReversed(const std::uint32_t* p) {
        return _mm256_shuffle_epi32(
            _mm256_inserti128_si256(_mm256_castsi128_si256(Quad::load(p - 3)), Quad::load(p - 7), 1), 0x1b);
    }
    static void store(std::uint32_t* p, Register value) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), value); }
    // The eight bytes stand in both halves, so that one shuffle widens and spreads them.
    static Register loadWeights(const std::uint8_t* p) { return spreadBytes(both(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) { return spreadBytesReversed(both(p - 7)); }
    static Register spreadBytes(Register bytes) {
        return _mm256_shuffle_epi8(bytes, _mm256_setr_epi8(0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1, 4, 4, 4,
                                                           -1, 5, 5, 5, -1, 6, 6, 6, -1, 7, 7, 7, -1));
    }
    static Register spreadBytesReversed(Register bytes) {
        return _mm256_shuffle_epi8(bytes, _mm256_setr_epi8(7, 7, 7, -1, 6, 6, 6, -1, 5, 5, 5, -1, 4, 4, 4, -1, 3, 3, 3,
                                                           -1, 2, 2, 2, -1, 1, 1, 1, -1, 0, 0, 0, -1));
    }
    static Register both(const std::uint8_t* p) {
        return _mm256_set1_epi64x(static_cast<long long>(wordAt<std::uint64_t>(p)));
    }
    static Register loadHalves(const std::uint16_t* p) {
        return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
    }
    static Register loadHalvesReversed(const std::uint16_t* p) { return reversed(loadHalves(p - 7)); }
    static Register reversed(Register value) {
        return _mm256_permutevar8x32_epi32(value, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0));
    }
};

}  // namespace
}  // namespace Engine::Raster

#include "engine/src/raster/vectorkernels.h"

namespace Engine::Raster {
namespace {

/// At least 32 bytes. Whole lines are stored aligned; the ends overlap them.
[[gnu::always_inline]] inline void fillLong(char* p, std::size_t bytes, __m256i pattern) {
    char* const last = p + bytes - 32;
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), pattern);
    p += 32 - (reinterpret_cast<std::uintptr_t>(p) & 31);
    for (; last - p >= 96; p += 128) {
        _mm256_store_si256(reinterpret_cast<__m256i*>(p), pattern);
        _mm256_store_si256(reinterpret_cast<__m256i*>(p + 32), pattern);
        _mm256_store_si256(reinterpret_cast<__m256i*>(p + 64), pattern);
        _mm256_store_si256(reinterpret_cast<__m256i*>(p + 96), pattern);
    }
    for (; p < last; p += 32) _mm256_store_si256(reinterpret_cast<__m256i*>(p), pattern);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(last), pattern);
}

template <typename T>
void fillVector(const Target<T>& target, T value) {
    const Target<T> to = target;
    const __m256i pattern = _mm256_broadcastsi128_si256(patternOf(value));
    const auto bytes = static_cast<std::size_t>(to.width) * sizeof(T);
    for (std::ptrdiff_t v = 0; v < to.rows; ++v) {
        char* const p = reinterpret_cast<char*>(to.first + v * to.rowStep);
        if (bytes >= 32)
            fillLong(p, bytes, pattern);
        else
            fillShort(p, bytes, _mm256_castsi256_si128(pattern));
    }
}

[[gnu::always_inline]] inline void turnEight(std::uint32_t* out, std::ptrdiff_t outStep, const std::uint32_t* from,
                                             std::ptrdiff_t step) {
    // Columns 0 and 4, 1 and 5, ... share a register, so that everything stays within halves: the loads do the
    // crossing.
    const auto columns = [&](int i, int half) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(Quad::load(from + i * step + 4 * half)),
                                       Quad::load(from + (i + 4) * step + 4 * half), 1);
    };
    for (int half = 0; half < 2; ++half, out += 4 * outStep) {
        const __m256i a = columns(0, half), b = columns(1, half), c = columns(2, half), d = columns(3, half);
        const __m256i ab = _mm256_unpacklo_epi32(a, b);
        const __m256i cd = _mm256_unpacklo_epi32(c, d);
        const __m256i ab2 = _mm256_unpackhi_epi32(a, b);
        const __m256i cd2 = _mm256_unpackhi_epi32(c, d);
        Wide::store(out, _mm256_unpacklo_epi64(ab, cd));
        Wide::store(out + outStep, _mm256_unpackhi_epi64(ab, cd));
        Wide::store(out + 2 * outStep, _mm256_unpacklo_epi64(ab2, cd2));
        Wide::store(out + 3 * outStep, _mm256_unpackhi_epi64(ab2, cd2));
    }
}

/// Two Quads in one register, for rows of 4 to 8 pixels: they begin and end with the row and may overlap. Both are
/// loaded before either is stored, so that what lies under both is mixed once.
struct TwoQuads {
    static __m256i load(const std::uint32_t* p, std::ptrdiff_t second) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(Quad::load(p)), Quad::load(p + second), 1);
    }
    static void store(std::uint32_t* p, std::ptrdiff_t second, __m256i value) {
        Quad::store(p, _mm256_castsi256_si128(value));
        Quad::store(p + second, _mm256_extracti128_si256(value, 1));
    }
    static __m256i loadBytes(const std::uint8_t* p, const std::uint8_t* second) {
        const __m128i word = _mm_cvtsi32_si128(static_cast<int>(wordAt<std::uint32_t>(p)));
        return _mm256_broadcastq_epi64(_mm_insert_epi32(word, static_cast<int>(wordAt<std::uint32_t>(second)), 1));
    }
    static __m256i loadWeights(Forwards, const std::uint8_t* p, std::ptrdiff_t second) {
        return Wide::spreadBytes(loadBytes(p, p + second));
    }
    static __m256i loadWeights(Backwards, const std::uint8_t* p, std::ptrdiff_t second) {
        return Wide::spreadBytesReversed(loadBytes(p - second - 3, p - 3));
    }
};

template <typename Direction>
[[gnu::always_inline]] inline void maskTwoQuads(const Target<std::uint32_t>& target, const Source<std::uint8_t>& source,
                                                Color color) {
    const __m256i ink = repeated<__m256i>(color);
    const std::ptrdiff_t second = target.width - Quad::count;
    const std::ptrdiff_t rowStep = target.rowStep, sourceStep = source.rowStep;
    std::uint32_t* row = target.first;
    const std::uint8_t* from = source.first;
    for (std::ptrdiff_t v = target.rows; v > 0; --v, row += rowStep, from += sourceStep)
        TwoQuads::store(row, second,
                        mix(ink, TwoQuads::load(row, second), TwoQuads::loadWeights(Direction{}, from, second)));
}

/// The same with two Wides, for rows of 8 to 16 pixels.
template <typename Direction>
[[gnu::always_inline]] inline void maskTwoWides(const Target<std::uint32_t>& target, const Source<std::uint8_t>& source,
                                                Color color) {
    const __m256i ink = repeated<__m256i>(color);
    const std::ptrdiff_t second = target.width - Wide::count;
    const std::ptrdiff_t rowStep = target.rowStep, sourceStep = source.rowStep;
    std::uint32_t* row = target.first;
    const std::uint8_t* from = source.first;
    for (std::ptrdiff_t v = target.rows; v > 0; --v, row += rowStep, from += sourceStep) {
        const __m256i first = mix(ink, Wide::load(row), Direction::load(Wide{}, from, 0));
        const __m256i last = mix(ink, Wide::load(row + second), Direction::load(Wide{}, from, second));
        Wide::store(row, first);
        Wide::store(row + second, last);
    }
}

/// Glyphs and icons are seldom wider than 16 pixels, and their odd widths would take up to four pieces a row.
void maskAvx2(const Target<std::uint32_t>& target, const Source<std::uint8_t>& source, Color color) {
    const std::ptrdiff_t width = target.width;
    if (width < Quad::count || width > 2 * Wide::count) return maskVector(target, source, color);
    const bool forwards = source.step == 1;
    if (width <= Wide::count)
        forwards ? maskTwoQuads<Forwards>(target, source, color) : maskTwoQuads<Backwards>(target, source, color);
    else
        forwards ? maskTwoWides<Forwards>(target, source, color) : maskTwoWides<Backwards>(target, source, color);
}

template <typename S>
void turnVector(S* out, std::ptrdiff_t outStep, const Source<S>& source, std::ptrdiff_t width, std::ptrdiff_t rows) {
    if constexpr (sizeof(S) == 1)
        turnSquares<8>(out, outStep, source, width, rows, turnEightBytes);
    else if constexpr (sizeof(S) == 2)
        turnSquares<8>(out, outStep, source, width, rows, turnEightHalves);
    else if (width < 8 || rows < 8)
        turnSquares<4>(out, outStep, source, width, rows, turnFour);
    else
        turnSquares<8>(out, outStep, source, width, rows, turnEight);
}

/// A near eight is one load and one permutation: so are nearly all of a picture that is not made smaller.
void pickVector(std::uint32_t* out, const std::uint32_t* row, const PickPlan& plan) {
    std::int32_t u = 0;
    for (; u + 8 <= plan.width; u += 8) {
        const std::uint32_t* const from = row + plan.bases[u / 8];
        const auto* const places = reinterpret_cast<const __m256i*>(plan.places + u);
        if (plan.near[u / 8])
            Wide::store(out + u, _mm256_permutevar8x32_epi32(Wide::load(from), _mm256_loadu_si256(places)));
        else
            for (int i = u; i < u + 8; ++i) out[i] = from[plan.places[i]];
    }
    for (; u < plan.width; ++u) out[u] = row[plan.bases[u / 8] + plan.places[u]];
}

template <typename T>
constexpr Kernels<T> set = [] {
    Kernels<T> kernels = vectorKernels<T>();
    kernels.fill = fillVector<T>;
    if constexpr (sizeof(T) == 4) kernels.mask = maskAvx2;
    return kernels;
}();
template <typename S>
constexpr Moves<S> moveSet = {turnVector<S>, pickScalar<S>};
template <>
constexpr Moves<std::uint32_t> moveSet<std::uint32_t> = {turnVector<std::uint32_t>, pickVector};

}  // namespace

template <>
const Kernels<std::uint8_t>& avx2Kernels() {
    return set<std::uint8_t>;
}
template <>
const Kernels<std::uint16_t>& avx2Kernels() {
    return set<std::uint16_t>;
}
template <>
const Kernels<std::uint32_t>& avx2Kernels() {
    return set<std::uint32_t>;
}
template <>
const Moves<std::uint8_t>& avx2Moves() {
    return moveSet<std::uint8_t>;
}
template <>
const Moves<std::uint16_t>& avx2Moves() {
    return moveSet<std::uint16_t>;
}
template <>
const Moves<std::uint32_t>& avx2Moves() {
    return moveSet<std::uint32_t>;
}

}  // namespace Engine::Raster

#endif
