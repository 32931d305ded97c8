#include "platform/virtual/instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

namespace Platform::Virtual {

namespace fs = std::filesystem;

namespace {

constexpr unsigned defaultWidth = 240, defaultHeight = 400, defaultBits = 32;
constexpr unsigned buffers = 2;

std::unique_ptr<Instance>& holder() {
    static std::unique_ptr<Instance> instance;
    return instance;
}

[[noreturn, gnu::format(printf, 1, 2)]] void refuse(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
    std::_Exit(2);
}

bool isName(const std::string& name) {
    const char* allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    return !name.empty() && name.size() <= 64 && name.find_first_not_of(allowed) == std::string::npos &&
           name.front() != '.';
}

int openShared(const std::string& path) {
    return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
}

/// /tmp is everybody's: what lies there is used only when it is our own, real folder.
void makeOwnFolder(const std::string& folder) {
    std::error_code ignored;
    fs::create_directories(fs::path(folder).parent_path(), ignored);
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        refuse("The instance folder %s cannot be made: %s", folder.c_str(), std::strerror(errno));
    struct stat status;
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        refuse("The instance folder %s is not a folder of this user. Remove it or set TERN_INSTANCE_DIR.",
               folder.c_str());
}

fb_bitfield bits(unsigned offset, unsigned length) {
    return {offset, length, 0};
}

fb_var_screeninfo screenMode(unsigned width, unsigned height, unsigned bitsPerPixel) {
    fb_var_screeninfo mode = {};
    mode.xres = mode.xres_virtual = width;
    mode.yres = mode.yres_virtual = height;
    mode.bits_per_pixel = bitsPerPixel;
    const bool small = bitsPerPixel <= 16;
    mode.red = small ? bits(11, 5) : bits(16, 8);
    mode.green = small ? bits(5, 6) : bits(8, 8);
    mode.blue = small ? bits(0, 5) : bits(0, 8);
    constexpr std::uint64_t picosecondsPerFrame = 1'000'000'000'000 / 60;
    mode.pixclock = static_cast<std::uint32_t>(picosecondsPerFrame / (std::uint64_t{width} * height));  // no blanking
    return mode;
}

}  // namespace

Place Place::named(const std::string& name) {
    const std::string own = "/tmp/tern-" + std::to_string(::geteuid());
    return {name, own + "/" + name};
}

Place Place::fromEnvironment() {
    const char* name = std::getenv("TERN_INSTANCE");
    const char* folder = std::getenv("TERN_INSTANCE_DIR");
    Place place = named(name != nullptr && *name != '\0' ? name : "default");
    if (folder != nullptr && *folder != '\0') place.folder = folder;
    return place;
}

Instance& Instance::current() {
    auto& instance = holder();
    if (!instance) instance = std::make_unique<Instance>(Place::fromEnvironment());
    return *instance;
}

void Instance::use(Place place) {
    holder().reset();
    holder() = std::make_unique<Instance>(std::move(place));
}

Instance::Instance(Place place) : place_(std::move(place)) {
    if (!isName(place_.name))
        refuse("\"%s\" is no name for an instance: use up to 64 letters, digits, '-', '_' and '.'.",
               place_.name.c_str());
    while (place_.folder.size() > 1 && place_.folder.back() == '/') place_.folder.pop_back();
    if (place_.folder.empty() || place_.folder.front() != '/')
        refuse("The instance folder \"%s\" must be an absolute path.", place_.folder.c_str());
    prefix_ = "/tern-" + std::to_string(::geteuid()) + "-" + place_.name + ".";
    if (place_.folder == Place::named(place_.name).folder)
        makeOwnFolder(fs::path(place_.folder).parent_path().string());
    makeOwnFolder(place_.folder);
    openControl();
}

Instance::~Instance() {
    ::munmap(control_, sizeof(ControlBlock));
    ::close(vsyncLock_);
    ::close(clockLock_);
}

void Instance::openControl() {
    vsyncLock_ = openShared(file(vsyncLock));
    clockLock_ = openShared(file(clockLock));
    const std::string path = file("control");
    const int fd = openShared(path);
    struct stat status;
    if (vsyncLock_ < 0 || clockLock_ < 0 || fd < 0 || ::flock(fd, LOCK_EX) != 0 || ::fstat(fd, &status) != 0)
        refuse("%s cannot be opened: %s", path.c_str(), std::strerror(errno));
    const bool fresh = status.st_size == 0;
    if (!fresh && status.st_size != sizeof(ControlBlock))
        refuse("%s is of another version (%lld bytes instead of %zu). Remove the instance folder.", path.c_str(),
               static_cast<long long>(status.st_size), sizeof(ControlBlock));
    if (fresh && ::ftruncate(fd, sizeof(ControlBlock)) != 0)
        refuse("%s cannot be made: %s", path.c_str(), std::strerror(errno));
    void* mapping = ::mmap(nullptr, sizeof(ControlBlock), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (mapping == MAP_FAILED) refuse("%s cannot be mapped: %s", path.c_str(), std::strerror(errno));
    control_ = static_cast<ControlBlock*>(mapping);
    // The magic word goes in last: a creator that died half way leaves a block that the next one completes.
    if (control_->magic != ControlBlock::currentMagic) createDisplay();
    if (control_->version != ControlBlock::currentVersion)
        refuse("%s is of version %u, this program speaks %u. Remove the instance folder.", path.c_str(),
               control_->version, ControlBlock::currentVersion);
    ::flock(fd, LOCK_UN);  // closing alone would not do: the mapping keeps the open file, and with it the lock
    ::close(fd);
}

void Instance::createDisplay() {
    for (const char* folder : {"dev/input/by-path", "var/volatile", "tmp", "usr/share"}) {
        std::error_code failed;
        if (fs::create_directories(file(folder), failed); failed)
            refuse("%s cannot be made: %s", file(folder).c_str(), failed.message().c_str());
    }
    setScreen(defaultWidth, defaultHeight, defaultBits);
    control_->version = ControlBlock::currentVersion;
    control_->magic = ControlBlock::currentMagic;
}

void Instance::setScreen(unsigned width, unsigned height, unsigned bitsPerPixel) {
    const std::string path = file("dev/fb0");
    const int fd = openShared(path);
    const auto size = static_cast<off_t>(width) * height * ((bitsPerPixel + 7) / 8) * buffers;
    if (fd < 0 || ::ftruncate(fd, 0) != 0 || ::ftruncate(fd, size) != 0)
        refuse("%s cannot be made: %s", path.c_str(), std::strerror(errno));
    ::close(fd);
    control_->screen = screenMode(width, height, bitsPerPixel);
    control_->yoffset = 0;
}

const char* Instance::mapPath(const char* path, char (&buffer)[pathLimit]) const {
    const std::string& folder = place_.folder;
    const bool inside = std::strncmp(path, folder.c_str(), folder.size()) == 0 && path[folder.size()] == '/';
    const char* front = path[0] != '/' || inside ? "" : folder.c_str();
    const int length = std::snprintf(buffer, pathLimit, "%s%s", front, path);
    if (length >= 0 && static_cast<std::size_t>(length) < pathLimit) return buffer;
    errno = ENAMETOOLONG;
    return nullptr;
}

const char* Instance::mapName(const char* name, char (&buffer)[nameLimit]) const {
    if (name[0] != '/') {
        errno = EINVAL;
        return nullptr;
    }
    const int length = std::snprintf(buffer, nameLimit, "%s%s", prefix_.c_str(), name + 1);
    if (length >= 0 && static_cast<std::size_t>(length) < nameLimit) return buffer;
    errno = ENAMETOOLONG;
    return nullptr;
}

void Instance::liftAbandonedHolds() const {
    ControlBlock& block = *control_;
    if (block.clockHeld != 0 && ::flock(clockLock_, LOCK_EX | LOCK_NB) == 0) {
        block.offset = block.heldTime - machineTime();
        block.clockHeld = 0;
        ::flock(clockLock_, LOCK_UN);
    }
    if (block.vsyncHeld != 0 && ::flock(vsyncLock_, LOCK_EX | LOCK_NB) == 0) {
        block.vsyncHeld = 0;
        block.permits = 0;
        block.announce();
        ::flock(vsyncLock_, LOCK_UN);
    }
}

void Instance::removeNames() const {
    std::error_code ignored;
    const std::string start = prefix_.substr(1);
    for (const auto& entry : fs::directory_iterator("/dev/shm", ignored)) {
        std::string name = entry.path().filename().string();
        if (name.starts_with("sem.")) name.erase(0, 4);
        // Another point, and it is of an instance whose own name has one.
        if (name.starts_with(start) && name.find('.', start.size()) == std::string::npos)
            fs::remove(entry.path(), ignored);
    }
}

void Instance::remove() const {
    std::error_code ignored;
    fs::remove_all(place_.folder, ignored);
    removeNames();
}

}  // namespace Platform::Virtual
