#pragma once

#include <cstdint>

namespace Engine {

/// Four words in shared memory by which a service tool switches tracing while the program runs.
struct TraceFlags {
    std::uint32_t draw;
    std::uint32_t event;
    std::uint32_t var;
    std::uint32_t page;
};
static_assert(sizeof(TraceFlags) == 16, "a layout that other processes know");

}  // namespace Engine
