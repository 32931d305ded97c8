#pragma once

#include <cstddef>
#include <limits>

#include "platform/virtual/faults.h"

namespace Platform::Virtual {

/// What the faults make of one call. Used inside the twin only.
struct Verdict {
    bool instead = false;  ///< the call does nothing; its result is `value`, errno is set
    long value = 0;
    std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< most bytes that may move
};

/// Counts the call and looks for a fault. `path` is the unit's own path or name, "" when there is none.
Verdict strike(Call call, const char* path = "", unsigned long request = 0);

}  // namespace Platform::Virtual
