#include "embedded-gui-engine/hooks.h"

namespace Engine {

Hooks& hooks() {
    static constinit Hooks instance;
    return instance;
}

std::int64_t steadyNanoseconds() { return hooks().steadyNanoseconds != nullptr ? hooks().steadyNanoseconds() : 0; }

void engineLog(int level, const char* file, int line, const char* format, ...) {
    if (hooks().log == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    hooks().log(level, file, line, format, arguments);
    va_end(arguments);
}

}  // namespace Engine
