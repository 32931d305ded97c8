#pragma once

#include <cstddef>

/// How often the program has taken memory with `new` since it began. Whoever links counted-allocations has the whole
/// program's operators replaced; for programs of one thread.
extern std::size_t allocations;
