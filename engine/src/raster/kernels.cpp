#include "engine/src/raster/kernels.h"

#include "engine/src/raster/scalarkernels.h"

namespace Engine::Raster {

namespace {

template <typename T>
constexpr Kernels<T> scalarSet = scalarKernels<T>();
template <typename S>
constexpr Moves<S> scalarMoveSet = scalarMoves<S>();

}  // namespace

Isa bestIsa() {
    return Isa::Scalar;
}

template <typename T>
const Kernels<T>* kernelsOf(Isa isa) {
    switch (isa) {
        case Isa::Scalar: return &scalarSet<T>;
        default: return nullptr;
    }
}

template <typename S>
const Moves<S>* movesOf(Isa isa) {
    switch (isa) {
        case Isa::Scalar: return &scalarMoveSet<S>;
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
