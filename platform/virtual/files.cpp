#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "platform/system.h"
#include "platform/virtual/descriptors.h"
#include "platform/virtual/display.h"
#include "platform/virtual/strike.h"
#include "platform/virtual/tape/tape.h"

namespace Platform {

using Virtual::Call;
using Virtual::Instance;
using Virtual::recorder;
using Virtual::Replayer;
using Virtual::replayer;
using Virtual::strike;

namespace {

void noteOpened(Virtual::Recorder& to, const char* path, int flags, int fd) {
    if (fd >= 0 && Virtual::deviceOf(fd) == Virtual::Device::Framebuffer) to.framebufferOpened();
    if ((flags & O_ACCMODE) != O_RDONLY) return;
    to.opened(path, fd);
    if (fd >= 0 && (flags & O_DIRECTORY) != 0) to.listed(path, fd);
}

bool isServer(int fd) {
    return Virtual::isServerSocket(Virtual::pathOf(fd));
}

/// Whether what is read from the descriptor is part of a recording. Descriptors that the seam did not open are not.
bool isPlayed(int fd) {
    return Replayer::speaksFor(Virtual::pathOf(fd));
}

}  // namespace

int open(const char* path, int flags, mode_t mode) {
    if (const auto verdict = strike(Call::Open, path); verdict.instead) return static_cast<int>(verdict.value);
    char buffer[Instance::pathLimit];
    const char* file = Instance::current().mapPath(path, buffer);
    if (file == nullptr) return -1;
    // The log device of all processes of the unit is one file: it is made on demand, and nobody overwrites another.
    const bool log = std::strcmp(path, "/dev/kmsg") == 0;
    Replayer* const tape = replayer();
    const bool played = tape != nullptr && Replayer::speaksFor(path);
    const int fd = played ? tape->open(path, flags, mode)
                          : ::open(file, log ? flags | O_CREAT | O_APPEND : flags, log ? 0600 : mode);
    if (fd >= 0) Virtual::remember(fd, path);
    if (auto* to = recorder(); to != nullptr && !log) noteOpened(*to, path, flags, fd);
    return fd;
}

int close(int fd) {
    if (const auto verdict = strike(Call::Close, Virtual::pathOf(fd)); verdict.instead)
        return static_cast<int>(verdict.value);
    Virtual::forget(fd);
    return ::close(fd);
}

ssize_t read(int fd, void* buffer, size_t size) {
    const auto verdict = strike(Call::Read, Virtual::pathOf(fd));
    if (verdict.instead) return verdict.value;
    size = std::min(size, verdict.limit);
    if (Replayer* tape = replayer(); tape != nullptr && isPlayed(fd))
        return tape->read(Virtual::pathOf(fd), buffer, size);
    ssize_t count = ::read(fd, buffer, size);
    // A device has no end: a stream without a writer is one that has nothing to say just now.
    if (count == 0 && size != 0 && Virtual::deviceOf(fd) == Virtual::Device::Input) {
        errno = EAGAIN;
        count = -1;
    }
    if (auto* to = recorder(); to != nullptr && isPlayed(fd)) to->read(Virtual::pathOf(fd), buffer, count);
    return count;
}

ssize_t write(int fd, const void* data, size_t size) {
    const auto verdict = strike(Call::Write, Virtual::pathOf(fd));
    if (verdict.instead) return verdict.value;
    size = std::min(size, verdict.limit);
    if (!isServer(fd)) return ::write(fd, data, size);
    if (Replayer* tape = replayer()) {
        tape->sending(data, size);
        errno = tape->resultOf(Call::Write, Virtual::pathOf(fd));
        return errno == 0 ? static_cast<ssize_t>(size) : -1;
    }
    auto* const to = recorder();
    if (to != nullptr) to->sending(data, size);
    const ssize_t count = ::write(fd, data, size);
    if (to != nullptr && count < 0) to->ended(Call::Write, Virtual::pathOf(fd), false);
    return count;
}

ssize_t writev(int fd, const iovec* parts, int count) {
    const auto verdict = strike(Call::Writev, Virtual::pathOf(fd));
    if (verdict.instead) return verdict.value;
    std::array<iovec, 16> cut;
    size_t room = verdict.limit;
    int used = 0;
    for (; used < count && used < static_cast<int>(cut.size()) && room > 0; ++used) {
        cut[static_cast<size_t>(used)] = {parts[used].iov_base, std::min(parts[used].iov_len, room)};
        room -= cut[static_cast<size_t>(used)].iov_len;
    }
    return ::writev(fd, cut.data(), used);
}

int ioctl(int fd, unsigned long request, void* argument) {
    if (const auto verdict = strike(Call::Ioctl, Virtual::pathOf(fd), request); verdict.instead)
        return static_cast<int>(verdict.value);
    if (Virtual::deviceOf(fd) == Virtual::Device::Framebuffer)
        return Virtual::displayIoctl(Instance::current(), request, argument);
    return ::ioctl(fd, request, argument);
}

int fcntl(int fd, int command, int argument) {
    const auto verdict = strike(Call::Fcntl, Virtual::pathOf(fd));
    return verdict.instead ? static_cast<int>(verdict.value) : ::fcntl(fd, command, argument);
}

int ftruncate(int fd, off_t size) {
    const auto verdict = strike(Call::Ftruncate, Virtual::pathOf(fd));
    return verdict.instead ? static_cast<int>(verdict.value) : ::ftruncate(fd, size);
}

off_t fileSize(int fd) {
    if (const auto verdict = strike(Call::FileSize, Virtual::pathOf(fd)); verdict.instead) return verdict.value;
    struct stat status;
    return ::fstat(fd, &status) == 0 ? status.st_size : -1;
}

void* mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset) {
    const auto verdict = strike(Call::Mmap, Virtual::pathOf(fd));
    if (verdict.instead) return reinterpret_cast<void*>(verdict.value);  // -1 is MAP_FAILED
    void* mapping = ::mmap(address, size, protection, flags, fd, offset);
    auto* const to = recorder();
    const bool area = std::strncmp(Virtual::pathOf(fd), "/Mem", 4) == 0 && (flags & MAP_SHARED) != 0;
    return to != nullptr && area && mapping != MAP_FAILED ? to->mapped(Virtual::pathOf(fd), mapping, size) : mapping;
}

int munmap(void* address, size_t size) {
    const auto verdict = strike(Call::Munmap);
    if (verdict.instead) return static_cast<int>(verdict.value);
    if (auto* to = recorder(); to != nullptr && to->unmapped(address)) return 0;
    return ::munmap(address, size);
}

int unlinkPath(const char* path) {
    if (const auto verdict = strike(Call::UnlinkPath, path); verdict.instead) return static_cast<int>(verdict.value);
    char buffer[Instance::pathLimit];
    const char* file = Instance::current().mapPath(path, buffer);
    return file != nullptr ? ::unlink(file) : -1;
}

}  // namespace Platform
