#include "engine/src/raster/kernels.h"

#include "engine/src/raster/isa.h"
#include "engine/src/raster/scalarkernels.h"

namespace Engine::Raster {

namespace {

template <typename T>
constexpr Kernels<T> scalarSet = scalarKernels<T>();
template <typename S>
constexpr Moves<S> scalarMoveSet = scalarMoves<S>();

}  // namespace

void PickPlan::settle(std::ptrdiff_t size) {
    for (std::int32_t u = 0; u < width; u += 8) {
        std::int32_t* const eight = places + u;
        const int count = std::min(8, width - u);
        const std::int32_t lowest = std::min(eight[0], eight[count - 1]);
        const std::int32_t highest = std::max(eight[0], eight[count - 1]);
        const auto base = static_cast<std::int32_t>(std::clamp<std::ptrdiff_t>(size - 8, 0, lowest));
        near[u / 8] = count == 8 && size >= 8 && highest - base < 8;
        bases[u / 8] = base;
        for (int i = 0; i < count; ++i) eight[i] -= base;
    }
}

Isa bestIsa() {
#if defined(TERN_RASTER_X86)
    return __builtin_cpu_supports("avx2") ? Isa::Avx2 : Isa::Sse2;
#elif defined(TERN_RASTER_NEON)
    return Isa::Neon;
#else
    return Isa::Scalar;
#endif
}

template <typename T>
const Kernels<T>* kernelsOf(Isa isa) {
    switch (isa) {
        case Isa::Scalar: return &scalarSet<T>;
#if defined(TERN_RASTER_X86)
        case Isa::Sse2: return &sse2Kernels<T>();
        case Isa::Avx2: return bestIsa() == Isa::Avx2 ? &avx2Kernels<T>() : nullptr;
#elif defined(TERN_RASTER_NEON)
        case Isa::Neon: return &neonKernels<T>();
#endif
        default: return nullptr;
    }
}

template <typename S>
const Moves<S>* movesOf(Isa isa) {
    switch (isa) {
        case Isa::Scalar: return &scalarMoveSet<S>;
#if defined(TERN_RASTER_X86)
        case Isa::Sse2: return &sse2Moves<S>();
        case Isa::Avx2: return bestIsa() == Isa::Avx2 ? &avx2Moves<S>() : nullptr;
#elif defined(TERN_RASTER_NEON)
        case Isa::Neon: return &neonMoves<S>();
#endif
        default: return nullptr;
    }
}

template <typename S>
const Moves<S>& moves() {
    static const Moves<S>& best = *movesOf<S>(bestIsa());
    return best;
}

template const Kernels<std::uint8_t>* kernelsOf<std::uint8_t>(Isa);
template const Kernels<std::uint16_t>* kernelsOf<std::uint16_t>(Isa);
template const Kernels<std::uint32_t>* kernelsOf<std::uint32_t>(Isa);
template const Moves<std::uint8_t>* movesOf<std::uint8_t>(Isa);
template const Moves<std::uint16_t>* movesOf<std::uint16_t>(Isa);
template const Moves<std::uint32_t>* movesOf<std::uint32_t>(Isa);
template const Moves<std::uint8_t>& moves<std::uint8_t>();
template const Moves<std::uint16_t>& moves<std::uint16_t>();
template const Moves<std::uint32_t>& moves<std::uint32_t>();

}  // namespace Engine::Raster
