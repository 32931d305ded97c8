#include <fcntl.h>
#include <sys/mman.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

#include "platform/system.h"

namespace Platform {

int shmOpen(const char* name, int flags, mode_t mode) {
    return ::shm_open(name, flags, mode);
}
int shmUnlink(const char* name) {
    return ::shm_unlink(name);
}

sem_t* semOpen(const char* name, int flags, mode_t mode, unsigned value) {
    return ::sem_open(name, flags, mode, value);
}

int semWait(sem_t* semaphore) {
    return ::sem_wait(semaphore);
}
int semPost(sem_t* semaphore) {
    return ::sem_post(semaphore);
}
int semClose(sem_t* semaphore) {
    return ::sem_close(semaphore);
}
int semUnlink(const char* name) {
    return ::sem_unlink(name);
}

namespace {

bool fillAddress(sockaddr_un& address, const char* path) {
    address = {};
    address.sun_family = AF_UNIX;
    const size_t length = std::strlen(path);
    if (length >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path, length);
    return true;
}

}  // namespace

int socket(int domain, int type, int protocol) {
    return ::socket(domain, type, protocol);
}

int connectUnix(int fd, const char* path) {
    sockaddr_un address;
    if (!fillAddress(address, path)) return -1;
    return ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int bindUnix(int fd, const char* path) {
    sockaddr_un address;
    if (!fillAddress(address, path)) return -1;
    return ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int listen(int fd, int backlog) {
    return ::listen(fd, backlog);
}
int accept(int fd, int flags) {
    return ::accept4(fd, nullptr, nullptr, flags);
}
int shutdown(int fd, int how) {
    return ::shutdown(fd, how);
}

}  // namespace Platform
