#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "platform/virtual/virtual.h"

namespace Platform::Virtual {

namespace fs = std::filesystem;

namespace {

struct Instance {
    std::string name;
    std::string folder;
    ControlBlock* control = nullptr;
};

Instance& instance() {
    static Instance own = [] {
        const char* name = std::getenv("TERN_INSTANCE");
        const char* folder = std::getenv("TERN_INSTANCE_DIR");
        Instance result;
        result.name = name != nullptr && *name != '\0' ? name : "default";
        result.folder =
            folder != nullptr && *folder != '\0'
                ? folder
                : (fs::temp_directory_path() / ("tern-" + std::to_string(::getuid())) / result.name).string();
        return result;
    }();
    return own;
}

ControlBlock* mapControl(const std::string& folder) {
    fs::create_directories(folder);
    const std::string path = folder + "/control";
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0 || ::ftruncate(fd, sizeof(ControlBlock)) != 0)
        throw std::runtime_error("The virtual unit's state " + path + " cannot be opened: " + std::strerror(errno));
    void* address = ::mmap(nullptr, sizeof(ControlBlock), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    if (address == MAP_FAILED)
        throw std::runtime_error("The virtual unit's state " + path + " cannot be mapped: " + std::strerror(errno));
    auto* block = static_cast<ControlBlock*>(address);
    std::uint32_t empty = 0;
    if (block->magic.compare_exchange_strong(empty, ControlBlock::expectedMagic)) {
        block->width = 240;
        block->height = 400;
        block->bits = 32;
        block->buffers = 2;
        block->virtualHeight = 400;
    }
    return block;
}

bool startsWith(const std::string& path, const char* prefix) {
    return path.rfind(prefix, 0) == 0;
}

}  // namespace

void setInstance(const std::string& name, const std::string& folder) {
    release();
    instance().name = name;
    instance().folder = folder;
    fs::create_directories(folder);
}

const std::string& instanceName() {
    return instance().name;
}
const std::string& instanceFolder() {
    return instance().folder;
}

std::string mapPath(const std::string& path) {
    const std::string inside = instance().folder + path;
    if (startsWith(path, "/dev/") || startsWith(path, "/var/") || startsWith(path, "/run/")) {
        std::error_code ignored;
        fs::create_directories(fs::path(inside).parent_path(), ignored);
        return inside;
    }
    return ::access(inside.c_str(), F_OK) == 0 ? inside : path;
}

std::string mapName(const std::string& name) {
    return "/tern." + instance().name + "." + (name.empty() ? name : name.substr(1));
}

ControlBlock& control() {
    if (instance().control == nullptr) instance().control = mapControl(instance().folder);
    return *instance().control;
}

void release() {
    if (instance().control != nullptr) ::munmap(instance().control, sizeof(ControlBlock));
    instance().control = nullptr;
}

void removeInstance() {
    const std::string prefix = mapName("/").substr(1);
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/dev/shm", ignored)) {
        const std::string file = entry.path().filename().string();
        if (startsWith(file, prefix.c_str()) || startsWith(file, ("sem." + prefix).c_str()))
            fs::remove(entry.path(), ignored);
    }
    release();
    fs::remove_all(instance().folder, ignored);
}

void createDevice(const std::string& path) {
    const std::string inside = mapPath(path);
    if (::mkfifo(inside.c_str(), 0600) != 0 && errno != EEXIST)
        throw std::runtime_error("The device " + path + " cannot be made: " + std::strerror(errno));
}

void removeDevice(const std::string& path) {
    ::unlink(mapPath(path).c_str());
}

}  // namespace Platform::Virtual
