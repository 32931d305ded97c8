#pragma once

#include <cstdarg>
#include <cstdint>

#include "embedded-gui-engine/textid.h"

namespace Engine {

/// What the engine needs of the process around it. The shell sets these once, before the first use; a test sets its
/// own. Until then the clock stands at 0 and log lines go nowhere.
struct Hooks {
    /// The steady clock in nanoseconds.
    std::int64_t (*steadyNanoseconds)() = nullptr;
    /// `level` is the engine's own scale: 0 error, 1 warning, 2 important, 3 detail, 4 trace.
    void (*log)(int level, const char* file, int line, const char* format, va_list arguments) = nullptr;
    /// The text of a key in the current language, UTF-8, of static duration; never null. See textForId.
    const char* (*textForId)(TextId id) = nullptr;
};

Hooks& hooks();

std::int64_t steadyNanoseconds();

[[gnu::format(printf, 4, 5)]] void engineLog(int level, const char* file, int line, const char* format, ...);

}  // namespace Engine
