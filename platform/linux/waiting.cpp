#include <sched.h>

#include <cerrno>

#include "platform/system.h"

namespace Platform {

int poll(pollfd* fds, nfds_t count, int timeoutMs) {
    return ::poll(fds, count, timeoutMs);
}
int epollCreate(int size) {
    return ::epoll_create(size);
}

int epollControl(int epollFd, int operation, int fd, epoll_event* event) {
    return ::epoll_ctl(epollFd, operation, fd, event);
}

int epollWait(int epollFd, epoll_event* events, int maxEvents, int timeoutMs) {
    return ::epoll_wait(epollFd, events, maxEvents, timeoutMs);
}

int schedYield() {
    return ::sched_yield();
}

int sigaction(int signal, const struct sigaction* action, struct sigaction* old) {
    return ::sigaction(signal, action, old);
}

int timerCreate(clockid_t clock, sigevent* event, timer_t* timer) {
    return ::timer_create(clock, event, timer);
}

int timerSettime(timer_t timer, int flags, const itimerspec* value, itimerspec* old) {
    return ::timer_settime(timer, flags, value, old);
}

int timerDelete(timer_t timer) {
    return ::timer_delete(timer);
}

std::int64_t steadyNanoseconds() {
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

int sleepNanoseconds(std::int64_t duration, std::int64_t* remaining) {
    const timespec wanted = {static_cast<time_t>(duration / 1'000'000'000),
                             static_cast<long>(duration % 1'000'000'000)};
    timespec rest = {};
    const int result = ::nanosleep(&wanted, &rest);
    if (remaining != nullptr) *remaining = std::int64_t{rest.tv_sec} * 1'000'000'000 + rest.tv_nsec;
    return result;
}

}  // namespace Platform
