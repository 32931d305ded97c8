#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system.h"

namespace Platform {

int open(const char* path, int flags, mode_t mode) {
    return ::open(path, flags, mode);
}
int close(int fd) {
    return ::close(fd);
}
ssize_t read(int fd, void* buffer, size_t size) {
    return ::read(fd, buffer, size);
}
ssize_t write(int fd, const void* data, size_t size) {
    return ::write(fd, data, size);
}
ssize_t writev(int fd, const iovec* parts, int count) {
    return ::writev(fd, parts, count);
}
int ioctl(int fd, unsigned long request, void* argument) {
    return ::ioctl(fd, request, argument);
}
int fcntl(int fd, int command, int argument) {
    return ::fcntl(fd, command, argument);
}
int ftruncate(int fd, off_t size) {
    return ::ftruncate(fd, size);
}

off_t fileSize(int fd) {
    struct stat status;
    return ::fstat(fd, &status) == 0 ? status.st_size : -1;
}

void* mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset) {
    return ::mmap(address, size, protection, flags, fd, offset);
}

int munmap(void* address, size_t size) {
    return ::munmap(address, size);
}
int unlinkPath(const char* path) {
    return ::unlink(path);
}

}  // namespace Platform
