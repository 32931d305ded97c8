#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/system.h"
#include "platform/virtual/descriptors.h"
#include "platform/virtual/instance.h"
#include "platform/virtual/strike.h"
#include "platform/virtual/tape/tape.h"

namespace Platform {

using Virtual::Call;
using Virtual::Instance;
using Virtual::recorder;
using Virtual::replayer;
using Virtual::strike;

int shmOpen(const char* name, int flags, mode_t mode) {
    if (const auto verdict = strike(Call::ShmOpen, name); verdict.instead) return static_cast<int>(verdict.value);
    char buffer[Instance::nameLimit];
    const char* own = Instance::current().mapName(name, buffer);
    const bool opens = (flags & O_CREAT) == 0;
    if (auto* tape = replayer(); tape != nullptr && opens) {
        const int played = tape->openArea(name);
        if (played >= 0) Virtual::remember(played, name);
        return played;
    }
    const int fd = own != nullptr ? ::shm_open(own, flags, mode) : -1;
    if (fd >= 0) Virtual::remember(fd, name);
    if (auto* to = recorder(); to != nullptr && opens) to->areaOpened(name, fd);
    return fd;
}

int shmUnlink(const char* name) {
    if (const auto verdict = strike(Call::ShmUnlink, name); verdict.instead) return static_cast<int>(verdict.value);
    char buffer[Instance::nameLimit];
    const char* own = Instance::current().mapName(name, buffer);
    return own != nullptr ? ::shm_unlink(own) : -1;
}

namespace {

/// Stands for the gate in a replay, where there is nobody to wait for.
sem_t playedSemaphore;

}  // namespace

sem_t* semOpen(const char* name, int flags, mode_t mode, unsigned value) {
    if (const auto verdict = strike(Call::SemOpen, name); verdict.instead)
        return verdict.value == -1 ? SEM_FAILED : reinterpret_cast<sem_t*>(verdict.value);
    if (auto* tape = replayer(); tape != nullptr) {
        errno = tape->resultOf(Call::SemOpen, name);
        return errno == 0 ? &playedSemaphore : SEM_FAILED;
    }
    char buffer[Instance::nameLimit];
    const char* own = Instance::current().mapName(name, buffer);
    sem_t* const semaphore = own != nullptr ? ::sem_open(own, flags, mode, value) : SEM_FAILED;
    if (auto* to = recorder()) to->ended(Call::SemOpen, name, semaphore != SEM_FAILED);
    return semaphore;
}

int semWait(sem_t* semaphore) {
    const auto verdict = strike(Call::SemWait);
    if (verdict.instead) return static_cast<int>(verdict.value);
    return semaphore == &playedSemaphore ? 0 : ::sem_wait(semaphore);
}

int semPost(sem_t* semaphore) {
    const auto verdict = strike(Call::SemPost);
    if (verdict.instead) return static_cast<int>(verdict.value);
    return semaphore == &playedSemaphore ? 0 : ::sem_post(semaphore);
}

int semClose(sem_t* semaphore) {
    const auto verdict = strike(Call::SemClose);
    if (verdict.instead) return static_cast<int>(verdict.value);
    return semaphore == &playedSemaphore ? 0 : ::sem_close(semaphore);
}

int semUnlink(const char* name) {
    if (const auto verdict = strike(Call::SemUnlink, name); verdict.instead) return static_cast<int>(verdict.value);
    char buffer[Instance::nameLimit];
    const char* own = Instance::current().mapName(name, buffer);
    return own != nullptr ? ::sem_unlink(own) : -1;
}

namespace {

/// The address of a socket of the unit. A file name that does not fit into an address, which a deep instance folder
/// brings about, is reached through a descriptor of its folder, open as long as this object lives.
class SocketAddress {
  public:
    explicit SocketAddress(const char* path) {
        address_.sun_family = AF_UNIX;
        char buffer[Instance::pathLimit];
        const char* file = Instance::current().mapPath(path, buffer);
        if (file == nullptr) return;
        const size_t length = std::strlen(file);
        if (length < sizeof address_.sun_path) {
            std::memcpy(address_.sun_path, file, length);
            valid_ = true;
        } else {
            throughFolder(buffer);
        }
    }
    ~SocketAddress() {
        if (folder_ >= 0) ::close(folder_);
    }
    SocketAddress(const SocketAddress&) = delete;
    SocketAddress& operator=(const SocketAddress&) = delete;

    bool valid() const { return valid_; }
    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
    static constexpr socklen_t size = sizeof(sockaddr_un);

  private:
    void throughFolder(char* file) {
        char* slash = std::strrchr(file, '/');
        *slash = '\0';
        folder_ = ::open(file, O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (folder_ < 0) return;
        const int length =
            std::snprintf(address_.sun_path, sizeof address_.sun_path, "/proc/self/fd/%d/%s", folder_, slash + 1);
        valid_ = length > 0 && static_cast<size_t>(length) < sizeof address_.sun_path;
        if (!valid_) errno = ENAMETOOLONG;
    }

    sockaddr_un address_ = {};
    int folder_ = -1;
    bool valid_ = false;
};

}  // namespace

int socket(int domain, int type, int protocol) {
    const auto verdict = strike(Call::Socket);
    return verdict.instead ? static_cast<int>(verdict.value) : ::socket(domain, type, protocol);
}

int connectUnix(int fd, const char* path) {
    if (const auto verdict = strike(Call::Connect, path); verdict.instead) return static_cast<int>(verdict.value);
    if (auto* tape = replayer(); tape != nullptr) {
        errno = tape->resultOf(Call::Connect, path);
        if (errno != 0) return -1;
    } else {
        const SocketAddress address(path);
        const bool connected = address.valid() && ::connect(fd, address.get(), SocketAddress::size) == 0;
        if (auto* to = recorder()) to->ended(Call::Connect, path, connected);
        if (!connected) return -1;
    }
    Virtual::remember(fd, path);
    return 0;
}

int bindUnix(int fd, const char* path) {
    if (const auto verdict = strike(Call::Bind, path); verdict.instead) return static_cast<int>(verdict.value);
    const SocketAddress address(path);
    return address.valid() ? ::bind(fd, address.get(), SocketAddress::size) : -1;
}

int listen(int fd, int backlog) {
    const auto verdict = strike(Call::Listen);
    return verdict.instead ? static_cast<int>(verdict.value) : ::listen(fd, backlog);
}

int accept(int fd, int flags) {
    const auto verdict = strike(Call::Accept);
    return verdict.instead ? static_cast<int>(verdict.value) : ::accept4(fd, nullptr, nullptr, flags);
}

int shutdown(int fd, int how) {
    const auto verdict = strike(Call::Shutdown, Virtual::pathOf(fd));
    if (verdict.instead) return static_cast<int>(verdict.value);
    return replayer() != nullptr ? 0 : ::shutdown(fd, how);
}

}  // namespace Platform
