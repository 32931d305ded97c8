#include "embedded-gui-engine/lettercase.h"

namespace Engine {

bool equalsInCase(const char* text, const char* source, CaseMode mode) {
    char previous = ' ';
    for (; *text != '\0' && *text == transformCase(mode, *source, previous); ++text, ++source) previous = *text;
    return *text == '\0' && *source == '\0';
}

void copyInCase(char* target, const char* source, CaseMode mode) {
    char previous = ' ';
    while (*source != '\0') *target++ = previous = transformCase(mode, *source++, previous);
    *target = '\0';
}

}  // namespace Engine
