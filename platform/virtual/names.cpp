#include <sys/mman.h>
#include <sys/socket.h>

#include <fcntl.h>

#include "platform/system.h"
#include "platform/unixaddress.h"
#include "platform/virtual/faults.h"

namespace Platform {

using Virtual::Call;
using Virtual::fails;
using Virtual::mapName;

int shmOpen(const char* name, int flags, mode_t mode) {
    return fails(Call::ShmOpen) ? -1 : ::shm_open(mapName(name).c_str(), flags | O_CLOEXEC, mode);
}
int shmUnlink(const char* name) {
    return fails(Call::ShmUnlink) ? -1 : ::shm_unlink(mapName(name).c_str());
}

sem_t* semOpen(const char* name, int flags, mode_t mode, unsigned value) {
    return fails(Call::SemOpen) ? SEM_FAILED : ::sem_open(mapName(name).c_str(), flags, mode, value);
}

int semWait(sem_t* semaphore) {
    return fails(Call::SemWait) ? -1 : ::sem_wait(semaphore);
}
int semPost(sem_t* semaphore) {
    return fails(Call::SemPost) ? -1 : ::sem_post(semaphore);
}
int semClose(sem_t* semaphore) {
    return fails(Call::SemClose) ? -1 : ::sem_close(semaphore);
}
int semUnlink(const char* name) {
    return ::sem_unlink(mapName(name).c_str());
}

int socket(int domain, int type, int protocol) {
    return fails(Call::Socket) ? -1 : ::socket(domain, type, protocol);
}

int connectUnix(int fd, const char* path) {
    sockaddr_un address;
    if (fails(Call::Connect) || !fillUnixAddress(address, Virtual::mapPath(path).c_str())) return -1;
    return ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int bindUnix(int fd, const char* path) {
    sockaddr_un address;
    if (!fillUnixAddress(address, Virtual::mapPath(path).c_str())) return -1;
    return ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int listen(int fd, int backlog) {
    return ::listen(fd, backlog);
}
int accept(int fd, int flags) {
    return ::accept4(fd, nullptr, nullptr, flags);
}
int shutdown(int fd, int how) {
    return fails(Call::Shutdown) ? -1 : ::shutdown(fd, how);
}

}  // namespace Platform
