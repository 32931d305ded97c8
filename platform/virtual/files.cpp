#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bitset>
#include <cstring>

#include "platform/system.h"
#include "platform/virtual/display.h"
#include "platform/virtual/faults.h"

namespace Platform {

using Virtual::Call;
using Virtual::fails;

namespace {

/// Descriptors that stand for the display.
std::bitset<1024> displays;

bool isDisplay(int fd) {
    return fd >= 0 && static_cast<std::size_t>(fd) < displays.size() && displays[static_cast<std::size_t>(fd)];
}

void noteDisplay(int fd, bool on) {
    if (fd >= 0 && static_cast<std::size_t>(fd) < displays.size()) displays[static_cast<std::size_t>(fd)] = on;
}

/// The bytes that a call may move under a verdict.
size_t limited(const Virtual::Verdict& verdict, size_t size) {
    return verdict.atMost < 0 ? size : std::min(size, static_cast<size_t>(verdict.atMost));
}

}  // namespace

int open(const char* path, int flags, mode_t mode) {
    if (fails(Call::Open)) return -1;
    if (std::strcmp(path, "/dev/fb0") == 0) {
        const int fd = Virtual::openDisplay(flags);
        noteDisplay(fd, true);
        return fd;
    }
    const std::string inside = Virtual::mapPath(path);
    const bool isLog = std::strcmp(path, "/dev/kmsg") == 0;
    return ::open(inside.c_str(), isLog ? flags | O_CREAT | O_APPEND : flags, isLog ? 0600 : mode);
}

int close(int fd) {
    noteDisplay(fd, false);
    const bool failed = fails(Call::Close);
    const int error = errno;
    const int result = ::close(fd);  // the descriptor is gone in either case, as in the kernel
    if (!failed) return result;
    errno = error;
    return -1;
}

ssize_t read(int fd, void* buffer, size_t size) {
    const auto verdict = Virtual::judge(Call::Read);
    errno = verdict.error;
    return verdict.error != 0 ? -1 : ::read(fd, buffer, limited(verdict, size));
}

ssize_t write(int fd, const void* data, size_t size) {
    const auto verdict = Virtual::judge(Call::Write);
    errno = verdict.error;
    return verdict.error != 0 ? -1 : ::write(fd, data, limited(verdict, size));
}

ssize_t writev(int fd, const iovec* parts, int count) {
    return fails(Call::Writev) ? -1 : ::writev(fd, parts, count);
}

int ioctl(int fd, unsigned long request, void* argument) {
    if (fails(Call::Ioctl)) return -1;
    return isDisplay(fd) ? Virtual::displayIoctl(request, argument) : ::ioctl(fd, request, argument);
}

int fcntl(int fd, int command, int argument) {
    return fails(Call::Fcntl) ? -1 : ::fcntl(fd, command, argument);
}
int ftruncate(int fd, off_t size) {
    return fails(Call::Ftruncate) ? -1 : ::ftruncate(fd, size);
}

off_t fileSize(int fd) {
    if (fails(Call::FileSize)) return -1;
    struct stat status;
    return ::fstat(fd, &status) == 0 ? status.st_size : -1;
}

void* mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset) {
    return fails(Call::Mmap) ? MAP_FAILED : ::mmap(address, size, protection, flags, fd, offset);
}

int munmap(void* address, size_t size) {
    return fails(Call::Munmap) ? -1 : ::munmap(address, size);
}
int unlinkPath(const char* path) {
    return ::unlink(Virtual::mapPath(path).c_str());
}

}  // namespace Platform
