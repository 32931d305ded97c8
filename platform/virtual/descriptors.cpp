#include "platform/virtual/descriptors.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace Platform::Virtual {

namespace {

struct Opened {
    Device device = Device::Other;
    char path[108] = "";
};

std::array<Opened, 256> table;

Opened* entry(int fd) {
    return fd >= 0 && static_cast<std::size_t>(fd) < table.size() ? &table[static_cast<std::size_t>(fd)] : nullptr;
}

Device deviceAt(const char* path) {
    if (std::strcmp(path, "/dev/fb0") == 0) return Device::Framebuffer;
    return std::strncmp(path, "/dev/input/", 11) == 0 ? Device::Input : Device::Other;
}

}  // namespace

void remember(int fd, const char* path) {
    Opened* opened = entry(fd);
    if (opened == nullptr) return;
    opened->device = deviceAt(path);
    std::snprintf(opened->path, sizeof opened->path, "%s", path);
}

void forget(int fd) {
    if (Opened* opened = entry(fd)) *opened = {};
}

const char* pathOf(int fd) {
    const Opened* opened = entry(fd);
    return opened != nullptr ? opened->path : "";
}

Device deviceOf(int fd) {
    const Opened* opened = entry(fd);
    return opened != nullptr ? opened->device : Device::Other;
}

}  // namespace Platform::Virtual
