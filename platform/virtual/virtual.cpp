#include "platform/virtual/virtual.h"

#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>

namespace Platform::Virtual {

namespace {

Place freshPlace() {
    static std::atomic<unsigned> count = 0;
    std::string folder = (std::filesystem::temp_directory_path() / "tern-test-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) folder += "-not-made";
    return {"test-" + std::to_string(::getpid()) + "-" + std::to_string(++count), folder};
}

}  // namespace

std::string path(const std::string& unitPath) {
    char buffer[Instance::pathLimit];
    const char* file = Instance::current().mapPath(unitPath.c_str(), buffer);
    return file != nullptr ? file : "";
}

TemporaryInstance::TemporaryInstance() : place_(freshPlace()) {
    clearFaults();
    Instance::use(place_);
}

TemporaryInstance::~TemporaryInstance() {
    clearFaults();
    if (Instance::current().place().folder != place_.folder) Instance::use(place_);
    Instance::current().remove();
}

}  // namespace Platform::Virtual
