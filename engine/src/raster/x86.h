#pragma once

// What the two x86 sets share: registers of 128 bits, the plain fill and the turns. Compiled in each set's source.

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "engine/src/raster/pixel.h"
#include "engine/src/raster/plane.h"

// Registers as template arguments lose nothing but a hint on aliasing that their own loads and stores still have.
#pragma GCC diagnostic ignored "-Wignored-attributes"

namespace Engine::Raster {
namespace {

/// Scalar loads of 2 and 4 bytes that may lie anywhere.
template <typename Word>
[[gnu::always_inline]] inline Word wordAt(const void* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

template <typename Register>
Register repeated(std::uint32_t value);
template <>
[[gnu::always_inline]] inline __m128i repeated<__m128i>(std::uint32_t value) {
    return _mm_set1_epi32(static_cast<int>(value));
}

[[gnu::always_inline]] inline __m128i bitAnd(__m128i a, __m128i b) {
    return _mm_and_si128(a, b);
}
[[gnu::always_inline]] inline __m128i bitOr(__m128i a, __m128i b) {
    return _mm_or_si128(a, b);
}
[[gnu::always_inline]] inline __m128i bitXor(__m128i a, __m128i b) {
    return _mm_xor_si128(a, b);
}
[[gnu::always_inline]] inline __m128i bitAndNot(__m128i a, __m128i b) {
    return _mm_andnot_si128(b, a);
}
[[gnu::always_inline]] inline __m128i equal(__m128i a, __m128i b) {
    return _mm_cmpeq_epi32(a, b);
}
[[gnu::always_inline]] inline bool allSet(__m128i a, __m128i bits) {
    return _mm_movemask_epi8(_mm_cmpeq_epi32(bitAnd(a, bits), bits)) == 0xffff;
}
template <int bits>
[[gnu::always_inline]] inline __m128i shiftLeft(__m128i a) {
    return _mm_slli_epi32(a, bits);
}
template <int bits>
[[gnu::always_inline]] inline __m128i shiftRight(__m128i a) {
    return _mm_srli_epi32(a, bits);
}

// Bytes to 16-bit lanes and back. floor(v / 255) is ((v + 1) * 0x0101) >> 16, exact for v up to 65279, so the addition
// of 1 joins another constant and no shift is needed.
[[gnu::always_inline]] inline __m128i lower(__m128i a, __m128i b) {
    return _mm_unpacklo_epi8(a, b);
}
[[gnu::always_inline]] inline __m128i upper(__m128i a, __m128i b) {
    return _mm_unpackhi_epi8(a, b);
}
[[gnu::always_inline]] inline __m128i pack(__m128i a, __m128i b) {
    return _mm_packus_epi16(a, b);
}
[[gnu::always_inline]] inline __m128i add16(__m128i a, __m128i b) {
    return _mm_add_epi16(a, b);
}
[[gnu::always_inline]] inline __m128i times16(__m128i a, __m128i b) {
    return _mm_mullo_epi16(a, b);
}
[[gnu::always_inline]] inline __m128i divided(__m128i plusOne) {
    return _mm_mulhi_epu16(plusOne, _mm_set1_epi16(0x0101));
}

#if defined(__AVX2__)
template <>
[[gnu::always_inline]] inline __m256i repeated<__m256i>(std::uint32_t value) {
    return _mm256_set1_epi32(static_cast<int>(value));
}
[[gnu::always_inline]] inline __m256i bitAnd(__m256i a, __m256i b) {
    return _mm256_and_si256(a, b);
}
[[gnu::always_inline]] inline __m256i bitOr(__m256i a, __m256i b) {
    return _mm256_or_si256(a, b);
}
[[gnu::always_inline]] inline __m256i bitXor(__m256i a, __m256i b) {
    return _mm256_xor_si256(a, b);
}
[[gnu::always_inline]] inline __m256i bitAndNot(__m256i a, __m256i b) {
    return _mm256_andnot_si256(b, a);
}
[[gnu::always_inline]] inline __m256i equal(__m256i a, __m256i b) {
    return _mm256_cmpeq_epi32(a, b);
}
[[gnu::always_inline]] inline bool allSet(__m256i a, __m256i bits) {
    return _mm256_testc_si256(a, bits) != 0;
}
template <int bits>
[[gnu::always_inline]] inline __m256i shiftLeft(__m256i a) {
    return _mm256_slli_epi32(a, bits);
}

// Each half of the register for itself; pack() undoes lower() and upper().
[[gnu::always_inline]] inline __m256i lower(__m256i a, __m256i b) {
    return _mm256_unpacklo_epi8(a, b);
}
[[gnu::always_inline]] inline __m256i upper(__m256i a, __m256i b) {
    return _mm256_unpackhi_epi8(a, b);
}
[[gnu::always_inline]] inline __m256i pack(__m256i a, __m256i b) {
    return _mm256_packus_epi16(a, b);
}
[[gnu::always_inline]] inline __m256i add16(__m256i a, __m256i b) {
    return _mm256_add_epi16(a, b);
}
[[gnu::always_inline]] inline __m256i times16(__m256i a, __m256i b) {
    return _mm256_mullo_epi16(a, b);
}
[[gnu::always_inline]] inline __m256i divided(__m256i plusOne) {
    return _mm256_mulhi_epu16(plusOne, _mm256_set1_epi16(0x0101));
}
[[gnu::always_inline]] inline __m256i timesPairs(__m256i weights, __m256i values) {
    return _mm256_maddubs_epi16(weights, values);
}

[[gnu::always_inline]] inline __m256i spread(__m256i values) {
    return _mm256_shuffle_epi8(
        values, _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 0, 0, -1, 4, 4, 4, -1, 8, 8, 8, -1, 12, 12, 12, -1)));
}
[[gnu::always_inline]] inline __m256i spreadTop(__m256i pixels) {
    return _mm256_shuffle_epi8(
        pixels, _mm256_broadcastsi128_si256(_mm_setr_epi8(3, 3, 3, -1, 7, 7, 7, -1, 11, 11, 11, -1, 15, 15, 15, -1)));
}

#endif

#if defined(__SSSE3__)
[[gnu::always_inline]] inline __m128i timesPairs(__m128i weights, __m128i values) {
    return _mm_maddubs_epi16(weights, values);
}
[[gnu::always_inline]] inline __m128i spread(__m128i values) {
    return _mm_shuffle_epi8(values, _mm_setr_epi8(0, 0, 0, -1, 4, 4, 4, -1, 8, 8, 8, -1, 12, 12, 12, -1));
}
[[gnu::always_inline]] inline __m128i spreadTop(__m128i pixels) {
    return _mm_shuffle_epi8(pixels, _mm_setr_epi8(3, 3, 3, -1, 7, 7, 7, -1, 11, 11, 11, -1, 15, 15, 15, -1));
}

/// Pairs of a source and a target byte, lowered by 128 to be signed, times their weights: one instruction multiplies
/// and adds. What the lowering takes off, 128 * 255, is added with the 1 of the division.
template <typename Register>
[[gnu::always_inline]] inline Register mix(Register source, Register target, Register weight) {
    const Register signs = repeated<Register>(0x80808080U);
    const Register back = repeated<Register>(0x7f817f81U);
    const Register rest = bitXor(weight, repeated<Register>(0xffffffffU));
    const Register s = bitXor(source, signs);
    const Register t = bitXor(target, signs);
    const Register low = add16(timesPairs(lower(weight, rest), lower(s, t)), back);
    const Register high = add16(timesPairs(upper(weight, rest), upper(s, t)), back);
    return pack(divided(low), divided(high));
}
#else
[[gnu::always_inline]] inline __m128i spread(__m128i values) {
    return bitOr(bitOr(values, shiftLeft<8>(values)), shiftLeft<16>(values));
}
[[gnu::always_inline]] inline __m128i spreadTop(__m128i pixels) {
    return spread(shiftRight<24>(pixels));
}

[[gnu::always_inline]] inline __m128i mix(__m128i source, __m128i target, __m128i weight) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i one = repeated<__m128i>(0x00010001U);
    const __m128i rest = bitXor(weight, repeated<__m128i>(0xffffffffU));
    const __m128i low =
        add16(times16(lower(source, zero), lower(weight, zero)), times16(lower(target, zero), lower(rest, zero)));
    const __m128i high =
        add16(times16(upper(source, zero), upper(weight, zero)), times16(upper(target, zero), upper(rest, zero)));
    return pack(divided(add16(low, one)), divided(add16(high, one)));
}
#endif

/// 16-bit lanes that hold a value for each of a pixel's bytes, from blue to the top.
template <typename Register>
Register lanes16(std::uint16_t b, std::uint16_t g, std::uint16_t r, std::uint16_t top);
template <>
[[gnu::always_inline]] inline __m128i lanes16<__m128i>(std::uint16_t b, std::uint16_t g, std::uint16_t r,
                                                       std::uint16_t top) {
    return _mm_set1_epi64x(static_cast<long long>(std::uint64_t{b} | std::uint64_t{g} << 16 | std::uint64_t{r} << 32 |
                                                  std::uint64_t{top} << 48));
}

#if defined(__AVX2__)
template <>
[[gnu::always_inline]] inline __m256i lanes16<__m256i>(std::uint16_t b, std::uint16_t g, std::uint16_t r,
                                                       std::uint16_t top) {
    return _mm256_broadcastsi128_si256(lanes16<__m128i>(b, g, r, top));
}
#endif

template <typename Register>
class Blend {
  public:
    explicit Blend(Color color) {
        const std::uint16_t weight = alpha(color);
        const auto rest = static_cast<std::uint16_t>(255 - weight);
        const auto part = [weight](std::uint16_t channel) { return static_cast<std::uint16_t>(channel * weight + 1); };
        rest_ = lanes16<Register>(rest, rest, rest, 255);
        part_ = lanes16<Register>(part(blue(color)), part(green(color)), part(red(color)), 1);
    }

    [[gnu::always_inline]] Register over(Register target) const {
        const Register zero = repeated<Register>(0);
        return pack(divided(add16(times16(lower(target, zero), rest_), part_)),
                    divided(add16(times16(upper(target, zero), rest_), part_)));
    }

  private:
    Register rest_;
    Register part_;
};

struct Quad {
    using Register = __m128i;
    static constexpr int count = 4;

    static Register load(const std::uint32_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static Register loadReversed(const std::uint32_t* p) { return _mm_shuffle_epi32(load(p - 3), 0x1b); }
    static void store(std::uint32_t* p, Register value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), value); }
    static Register loadWeights(const std::uint8_t* p) { return weightsOf(wordAt<std::uint32_t>(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) {
        return weightsOf(__builtin_bswap32(wordAt<std::uint32_t>(p - 3)));
    }
    static Register loadHalves(const std::uint16_t* p) {
        return _mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128());
    }
    static Register loadHalvesReversed(const std::uint16_t* p) { return _mm_shuffle_epi32(loadHalves(p - 3), 0x1b); }
    static Register weightsOf(std::uint32_t bytes) {
        const __m128i packed = _mm_cvtsi32_si128(static_cast<int>(bytes));
#if defined(__SSSE3__)
        return _mm_shuffle_epi8(packed, _mm_setr_epi8(0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1));
#else
        const __m128i zero = _mm_setzero_si128();
        return spread(_mm_unpacklo_epi16(_mm_unpacklo_epi8(packed, zero), zero));
#endif
    }
};

struct Pair {
    using Register = __m128i;
    static constexpr int count = 2;

    static Register load(const std::uint32_t* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }
    static Register loadReversed(const std::uint32_t* p) { return _mm_shuffle_epi32(load(p - 1), 0xe1); }
    static void store(std::uint32_t* p, Register value) { _mm_storel_epi64(reinterpret_cast<__m128i*>(p), value); }
    static Register loadWeights(const std::uint8_t* p) { return Quad::weightsOf(wordAt<std::uint16_t>(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) {
        return Quad::weightsOf(__builtin_bswap16(wordAt<std::uint16_t>(p - 1)));
    }
    static Register loadHalves(const std::uint16_t* p) {
        return _mm_unpacklo_epi16(_mm_cvtsi32_si128(static_cast<int>(wordAt<std::uint32_t>(p))), _mm_setzero_si128());
    }
    static Register loadHalvesReversed(const std::uint16_t* p) { return _mm_shuffle_epi32(loadHalves(p - 1), 0xe1); }
};

struct Single {
    using Register = __m128i;
    static constexpr int count = 1;

    static Register load(const std::uint32_t* p) { return _mm_cvtsi32_si128(static_cast<int>(*p)); }
    static Register loadReversed(const std::uint32_t* p) { return load(p); }
    static void store(std::uint32_t* p, Register value) { *p = static_cast<std::uint32_t>(_mm_cvtsi128_si32(value)); }
    static Register loadWeights(const std::uint8_t* p) { return Quad::weightsOf(*p); }
    static Register loadWeightsReversed(const std::uint8_t* p) { return loadWeights(p); }
    static Register loadHalves(const std::uint16_t* p) { return _mm_cvtsi32_si128(*p); }
    static Register loadHalvesReversed(const std::uint16_t* p) { return loadHalves(p); }
};

/// A run of bytes below 32, of a pattern that repeats with the pixel: from both ends towards the middle.
[[gnu::always_inline]] inline void fillShort(char* p, std::size_t bytes, __m128i pattern) {
    const auto eight = static_cast<std::uint64_t>(_mm_cvtsi128_si64(pattern));
    const auto ends = [&](std::size_t size) {
        std::memcpy(p, &eight, size);
        std::memcpy(p + bytes - size, &eight, size);
    };
    if (bytes >= 16) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), pattern);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + bytes - 16), pattern);
    } else if (bytes >= 8) {
        ends(8);
    } else if (bytes >= 4) {
        ends(4);
    } else if (bytes >= 2) {
        ends(2);
    } else if (bytes == 1) {
        *p = static_cast<char>(eight);
    }
}

/// The bit pattern of 16 bytes of pixels.
template <typename T>
[[gnu::always_inline]] inline __m128i patternOf(T value) {
    return _mm_set1_epi32(static_cast<int>(value * (sizeof(T) == 1 ? 0x01010101U : sizeof(T) == 2 ? 0x00010001U : 1U)));
}

// Squares for turnSquares: four or eight columns are loaded and stored as as many rows.

[[gnu::always_inline]] inline void turnFour(std::uint32_t* out, std::ptrdiff_t outStep, const std::uint32_t* from,
                                            std::ptrdiff_t step) {
    const __m128i a = Quad::load(from);
    const __m128i b = Quad::load(from + step);
    const __m128i c = Quad::load(from + 2 * step);
    const __m128i d = Quad::load(from + 3 * step);
    const __m128i ab = _mm_unpacklo_epi32(a, b);
    const __m128i cd = _mm_unpacklo_epi32(c, d);
    const __m128i ab2 = _mm_unpackhi_epi32(a, b);
    const __m128i cd2 = _mm_unpackhi_epi32(c, d);
    Quad::store(out, _mm_unpacklo_epi64(ab, cd));
    Quad::store(out + outStep, _mm_unpackhi_epi64(ab, cd));
    Quad::store(out + 2 * outStep, _mm_unpacklo_epi64(ab2, cd2));
    Quad::store(out + 3 * outStep, _mm_unpackhi_epi64(ab2, cd2));
}

/// Rows of a square from pairs of 64-bit halves.
[[gnu::always_inline]] inline void storeHalves(std::uint8_t* out, std::ptrdiff_t outStep, __m128i rows) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), rows);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + outStep), _mm_unpackhi_epi64(rows, rows));
}

[[gnu::always_inline]] inline void turnEightBytes(std::uint8_t* out, std::ptrdiff_t outStep, const std::uint8_t* from,
                                                  std::ptrdiff_t step) {
    const auto column = [&](int i) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from + i * step)); };
    const __m128i ab = _mm_unpacklo_epi8(column(0), column(1));
    const __m128i cd = _mm_unpacklo_epi8(column(2), column(3));
    const __m128i ef = _mm_unpacklo_epi8(column(4), column(5));
    const __m128i gh = _mm_unpacklo_epi8(column(6), column(7));
    const __m128i abcd = _mm_unpacklo_epi16(ab, cd);
    const __m128i abcd2 = _mm_unpackhi_epi16(ab, cd);
    const __m128i efgh = _mm_unpacklo_epi16(ef, gh);
    const __m128i efgh2 = _mm_unpackhi_epi16(ef, gh);
    storeHalves(out, outStep, _mm_unpacklo_epi32(abcd, efgh));
    storeHalves(out + 2 * outStep, outStep, _mm_unpackhi_epi32(abcd, efgh));
    storeHalves(out + 4 * outStep, outStep, _mm_unpacklo_epi32(abcd2, efgh2));
    storeHalves(out + 6 * outStep, outStep, _mm_unpackhi_epi32(abcd2, efgh2));
}

[[gnu::always_inline]] inline void turnEightHalves(std::uint16_t* out, std::ptrdiff_t outStep,
                                                   const std::uint16_t* from, std::ptrdiff_t step) {
    const auto column = [&](int i) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i * step)); };
    const auto store = [&](int row, __m128i a) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + row * outStep), a);
    };
    const auto four = [&](int row, __m128i ab, __m128i cd, __m128i ef, __m128i gh) {
        const __m128i low = _mm_unpacklo_epi32(ab, cd);
        const __m128i high = _mm_unpackhi_epi32(ab, cd);
        const __m128i low2 = _mm_unpacklo_epi32(ef, gh);
        const __m128i high2 = _mm_unpackhi_epi32(ef, gh);
        store(row, _mm_unpacklo_epi64(low, low2));
        store(row + 1, _mm_unpackhi_epi64(low, low2));
        store(row + 2, _mm_unpacklo_epi64(high, high2));
        store(row + 3, _mm_unpackhi_epi64(high, high2));
    };
    const __m128i c0 = column(0), c1 = column(1), c2 = column(2), c3 = column(3);
    const __m128i c4 = column(4), c5 = column(5), c6 = column(6), c7 = column(7);
    four(0, _mm_unpacklo_epi16(c0, c1), _mm_unpacklo_epi16(c2, c3), _mm_unpacklo_epi16(c4, c5),
         _mm_unpacklo_epi16(c6, c7));
    four(4, _mm_unpackhi_epi16(c0, c1), _mm_unpackhi_epi16(c2, c3), _mm_unpackhi_epi16(c4, c5),
         _mm_unpackhi_epi16(c6, c7));
}

}  // namespace
}  // namespace Engine::Raster
