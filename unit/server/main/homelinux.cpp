#include <cstdlib>

#include "unit/server/main/home.h"

namespace Unit {

std::filesystem::path homeFolder() {
    const char* chosen = std::getenv("TERN_UNIT_DIR");
    const std::filesystem::path folder = chosen != nullptr && *chosen != '\0' ? chosen : "/var/volatile/tern-unit";
    std::filesystem::create_directories(folder);
    return folder;
}

std::string unitName() {
    return "board";
}

}  // namespace Unit
