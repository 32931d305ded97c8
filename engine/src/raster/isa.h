#pragma once

#include "engine/src/raster/kernels.h"

#if defined(__x86_64__)
#define TERN_RASTER_X86 1
#elif defined(__ARM_NEON)
#define TERN_RASTER_NEON 1
#endif

namespace Engine::Raster {

// One set a source; each is defined on its own machine only.
template <typename T>
const Kernels<T>& sse2Kernels();
template <typename S>
const Moves<S>& sse2Moves();
template <typename T>
const Kernels<T>& avx2Kernels();
template <typename S>
const Moves<S>& avx2Moves();
template <typename T>
const Kernels<T>& neonKernels();
template <typename S>
const Moves<S>& neonMoves();

}  // namespace Engine::Raster
