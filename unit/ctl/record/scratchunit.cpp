#include "unit/ctl/record/scratchunit.h"

#include <unistd.h>

namespace Unit {

ScratchUnit::ScratchUnit(const std::string& purpose) {
    static unsigned count = 0;
    place_ =
        Platform::Virtual::Place::named(purpose + "-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
}

ScratchUnit::~ScratchUnit() {
    Platform::Virtual::Instance(place_).remove();
}

}  // namespace Unit
