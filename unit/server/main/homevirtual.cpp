#include "platform/virtual/instance.h"
#include "unit/server/main/home.h"

namespace Unit {

std::filesystem::path homeFolder() {
    const std::filesystem::path folder = Platform::Virtual::Instance::current().file("unit");
    std::filesystem::create_directories(folder);
    return folder;
}

std::string unitName() {
    return "instance \"" + Platform::Virtual::Instance::current().place().name + "\"";
}

}  // namespace Unit
