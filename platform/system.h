// The seam to the operating system. Every call that a test must be able to fake, fail or slow down goes through
// here. Two twins implement it and one is chosen at link time: platform-linux passes straight through,
// platform-virtual gives a framebuffer, devices, names and a clock of its own (see platform/virtual/virtual.h).
//
// Each function has the contract of the call it is named after: the same result, the same errno. Callers have no
// conditional code for the twins. EINTR is never hidden: whoever wants to retry says so at the call.
#pragma once

#include <poll.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <time.h>

#include <cstddef>
#include <cstdint>

namespace Platform {

// Files and devices. Paths are the unit's own ("/dev/fb0"); the virtual twin maps them into its instance folder.
int open(const char* path, int flags, mode_t mode = 0);
int close(int fd);
ssize_t read(int fd, void* buffer, size_t size);
ssize_t write(int fd, const void* data, size_t size);
ssize_t writev(int fd, const iovec* parts, int count);
int ioctl(int fd, unsigned long request, void* argument);
int fcntl(int fd, int command, int argument);
int ftruncate(int fd, off_t size);
/// Size in bytes of the object behind `fd`, -1 with errno on failure.
off_t fileSize(int fd);

void* mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset);
int munmap(void* address, size_t size);

// Waiting.
int poll(pollfd* fds, nfds_t count, int timeoutMs);
int epollCreate(int size);
int epollControl(int epollFd, int operation, int fd, epoll_event* event);
int epollWait(int epollFd, epoll_event* events, int maxEvents, int timeoutMs);
int schedYield();

// System-wide names. The virtual twin puts its instance's prefix before them.
int shmOpen(const char* name, int flags, mode_t mode);
int shmUnlink(const char* name);
/// O_CREAT in `flags` makes the semaphore with `mode` and the count `value`. SEM_FAILED with errno on failure.
sem_t* semOpen(const char* name, int flags, mode_t mode = 0, unsigned value = 0);
int semWait(sem_t* semaphore);
int semPost(sem_t* semaphore);
int semClose(sem_t* semaphore);
int semUnlink(const char* name);

// Unix stream sockets. `path` is the unit's own; the virtual twin maps it into its instance folder.
int socket(int domain, int type, int protocol);
int connectUnix(int fd, const char* path);
int bindUnix(int fd, const char* path);
int listen(int fd, int backlog);
int accept(int fd, int flags);
int shutdown(int fd, int how);
int unlinkPath(const char* path);

// Signals and timers.
int sigaction(int signal, const struct sigaction* action, struct sigaction* old);
int timerCreate(clockid_t clock, sigevent* event, timer_t* timer);
int timerSettime(timer_t timer, int flags, const itimerspec* value, itimerspec* old);
int timerDelete(timer_t timer);

// Time. The virtual twin's clock may be held and stepped.
/// The steady clock in nanoseconds.
std::int64_t steadyNanoseconds();
/// Sleeps; returns -1 with EINTR and the rest in `remaining` (may be null) when a signal arrived.
int sleepNanoseconds(std::int64_t duration, std::int64_t* remaining);

}  // namespace Platform
