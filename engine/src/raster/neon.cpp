#include "engine/src/raster/isa.h"

#if defined(TERN_RASTER_NEON)

#include <arm_neon.h>

#include <cstring>

#include "engine/src/raster/pixel.h"

namespace Engine::Raster {
namespace {

template <typename Register>
Register repeated(std::uint32_t value);
template <>
inline uint32x4_t repeated<uint32x4_t>(std::uint32_t value) {
    return vdupq_n_u32(value);
}

inline uint32x4_t bitAnd(uint32x4_t a, uint32x4_t b) {
    return vandq_u32(a, b);
}
inline uint32x4_t bitOr(uint32x4_t a, uint32x4_t b) {
    return vorrq_u32(a, b);
}
inline uint32x4_t bitAndNot(uint32x4_t a, uint32x4_t b) {
    return vbicq_u32(a, b);
}
inline uint32x4_t equal(uint32x4_t a, uint32x4_t b) {
    return vceqq_u32(a, b);
}
inline bool allSet(uint32x4_t a, uint32x4_t bits) {
    const uint32x4_t missing = vbicq_u32(bits, a);
    const uint32x2_t folded = vorr_u32(vget_low_u32(missing), vget_high_u32(missing));
    return (vget_lane_u32(folded, 0) | vget_lane_u32(folded, 1)) == 0;
}
template <int bits>
inline uint32x4_t shiftLeft(uint32x4_t a) {
    return vshlq_n_u32(a, bits);
}

inline uint32x4_t spread(uint32x4_t values) {
    return vmulq_n_u32(values, 0x010101);
}
inline uint32x4_t spreadTop(uint32x4_t pixels) {
    return spread(vshrq_n_u32(pixels, 24));
}

/// floor(v / 255) of eight products: with t = v + 1 it is (t + t / 256) / 256.
inline uint8x8_t divided(uint16x8_t products) {
    const uint16x8_t t = vaddq_u16(products, vdupq_n_u16(1));
    return vaddhn_u16(t, vshrq_n_u16(t, 8));
}

inline uint8x8_t mixHalf(uint8x8_t source, uint8x8_t target, uint8x8_t weight) {
    return divided(vmlal_u8(vmull_u8(source, weight), target, vmvn_u8(weight)));
}

inline uint32x4_t mix(uint32x4_t source, uint32x4_t target, uint32x4_t weight) {
    const uint8x16_t s = vreinterpretq_u8_u32(source);
    const uint8x16_t t = vreinterpretq_u8_u32(target);
    const uint8x16_t w = vreinterpretq_u8_u32(weight);
    return vreinterpretq_u32_u8(vcombine_u8(mixHalf(vget_low_u8(s), vget_low_u8(t), vget_low_u8(w)),
                                            mixHalf(vget_high_u8(s), vget_high_u8(t), vget_high_u8(w))));
}

template <typename Register>
class Blend {
  public:
    explicit Blend(Color color) : source_(vdupq_n_u32(color)), weight_(spread(vdupq_n_u32(color >> 24))) {}

    Register over(Register target) const { return mix(source_, target, weight_); }

  private:
    Register source_;
    Register weight_;
};

/// Up to four values of a smaller type, each widened to 32 bits.
template <int count, typename S>
inline uint32x4_t widened(const S* p) {
    std::uint32_t values[4] = {};
    for (int i = 0; i < count; ++i) values[i] = p[i];
    return vld1q_u32(values);
}

inline uint32x4_t widenedFour(const std::uint8_t* p) {
    std::uint32_t bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return vmovl_u16(vget_low_u16(vmovl_u8(vreinterpret_u8_u32(vdup_n_u32(bytes)))));
}

struct Quad {
    using Register = uint32x4_t;
    static constexpr int count = 4;

    static Register load(const std::uint32_t* p) { return vld1q_u32(p); }
    static Register loadReversed(const std::uint32_t* p) { return reversed(load(p - 3)); }
    static void store(std::uint32_t* p, Register value) { vst1q_u32(p, value); }
    static Register loadWeights(const std::uint8_t* p) { return spread(widenedFour(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) { return reversed(loadWeights(p - 3)); }
    static Register loadHalves(const std::uint16_t* p) { return vmovl_u16(vld1_u16(p)); }
    static Register loadHalvesReversed(const std::uint16_t* p) { return reversed(loadHalves(p - 3)); }
    static Register reversed(Register value) {
        const uint32x4_t swapped = vrev64q_u32(value);
        return vcombine_u32(vget_high_u32(swapped), vget_low_u32(swapped));
    }
};
using Wide = Quad;

struct Pair {
    using Register = uint32x4_t;
    static constexpr int count = 2;

    static Register load(const std::uint32_t* p) { return vcombine_u32(vld1_u32(p), vdup_n_u32(0)); }
    static Register loadReversed(const std::uint32_t* p) { return vrev64q_u32(load(p - 1)); }
    static void store(std::uint32_t* p, Register value) { vst1_u32(p, vget_low_u32(value)); }
    static Register loadWeights(const std::uint8_t* p) { return spread(widened<2>(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) { return vrev64q_u32(loadWeights(p - 1)); }
    static Register loadHalves(const std::uint16_t* p) { return widened<2>(p); }
    static Register loadHalvesReversed(const std::uint16_t* p) { return vrev64q_u32(loadHalves(p - 1)); }
};

struct Single {
    using Register = uint32x4_t;
    static constexpr int count = 1;

    static Register load(const std::uint32_t* p) { return vsetq_lane_u32(*p, vdupq_n_u32(0), 0); }
    static Register loadReversed(const std::uint32_t* p) { return load(p); }
    static void store(std::uint32_t* p, Register value) { *p = vgetq_lane_u32(value, 0); }
    static Register loadWeights(const std::uint8_t* p) { return spread(widened<1>(p)); }
    static Register loadWeightsReversed(const std::uint8_t* p) { return loadWeights(p); }
    static Register loadHalves(const std::uint16_t* p) { return widened<1>(p); }
    static Register loadHalvesReversed(const std::uint16_t* p) { return loadHalves(p); }
};

}  // namespace
}  // namespace Engine::Raster

#include "engine/src/raster/vectorkernels.h"

namespace Engine::Raster {
namespace {

inline void turnFour(std::uint32_t* out, std::ptrdiff_t outStep, const std::uint32_t* from, std::ptrdiff_t step) {
    const uint32x4x2_t ab = vtrnq_u32(vld1q_u32(from), vld1q_u32(from + step));
    const uint32x4x2_t cd = vtrnq_u32(vld1q_u32(from + 2 * step), vld1q_u32(from + 3 * step));
    vst1q_u32(out, vcombine_u32(vget_low_u32(ab.val[0]), vget_low_u32(cd.val[0])));
    vst1q_u32(out + outStep, vcombine_u32(vget_low_u32(ab.val[1]), vget_low_u32(cd.val[1])));
    vst1q_u32(out + 2 * outStep, vcombine_u32(vget_high_u32(ab.val[0]), vget_high_u32(cd.val[0])));
    vst1q_u32(out + 3 * outStep, vcombine_u32(vget_high_u32(ab.val[1]), vget_high_u32(cd.val[1])));
}

void turnVector(std::uint32_t* out, std::ptrdiff_t outStep, const Source<std::uint32_t>& source, std::ptrdiff_t width,
                std::ptrdiff_t rows) {
    turnSquares<4>(out, outStep, source, width, rows, turnFour);
}

template <typename T>
constexpr Kernels<T> set = vectorKernels<T>();
template <typename S>
constexpr Moves<S> moveSet = scalarMoves<S>();
template <>
constexpr Moves<std::uint32_t> moveSet<std::uint32_t> = {turnVector, pickScalar<std::uint32_t>};

}  // namespace

template <>
const Kernels<std::uint8_t>& neonKernels() {
    return set<std::uint8_t>;
}
template <>
const Kernels<std::uint16_t>& neonKernels() {
    return set<std::uint16_t>;
}
template <>
const Kernels<std::uint32_t>& neonKernels() {
    return set<std::uint32_t>;
}
template <>
const Moves<std::uint8_t>& neonMoves() {
    return moveSet<std::uint8_t>;
}
template <>
const Moves<std::uint16_t>& neonMoves() {
    return moveSet<std::uint16_t>;
}
template <>
const Moves<std::uint32_t>& neonMoves() {
    return moveSet<std::uint32_t>;
}

}  // namespace Engine::Raster

#endif
