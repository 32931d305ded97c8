#include "backend/areas.h"

#include <algorithm>
#include <cassert>

namespace Backend {

unsigned char* areaBases[maxAreas] = {};

Areas::Areas(std::span<const AreaDefinition> definitions) {
    assert(definitions.size() <= maxAreas);
    for (const AreaDefinition& definition : definitions) {
        SharedMemory& memory = memories_.emplace_back(definition.name, definition.size);
        memory.open();
        areaBases[memories_.size() - 1] = static_cast<unsigned char*>(memory.address());
    }
}

Areas::~Areas() {
    std::fill_n(areaBases, memories_.size(), nullptr);
}

}  // namespace Backend
