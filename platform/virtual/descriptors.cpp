#include "platform/virtual/descriptors.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace Platform::Virtual {

namespace {

struct Opened {
    Device device = Device::Other;
    char path[108] = "";
    bool waited = false;
    std::uint64_t data = 0;
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

void rememberData(int fd, std::uint64_t data) {
    if (Opened* opened = entry(fd)) {
        opened->waited = true;
        opened->data = data;
    }
}

const char* pathByData(std::uint64_t data) {
    for (const Opened& opened : table)
        if (opened.waited && opened.data == data) return opened.path;
    return "";
}

bool isServerSocket(const char* path) {
    return std::strcmp(path, "/var/volatile/message-broker.socket") == 0;
}

Device deviceOf(int fd) {
    const Opened* opened = entry(fd);
    return opened != nullptr ? opened->device : Device::Other;
}

}  // namespace Platform::Virtual
