#include <sched.h>
#include <time.h>

#include "platform/system.h"
#include "platform/virtual/faults.h"
#include "platform/virtual/pace.h"

namespace Platform {

using Virtual::Call;
using Virtual::fails;

int poll(pollfd* fds, nfds_t count, int timeoutMs) {
    return fails(Call::Poll) ? -1 : ::poll(fds, count, timeoutMs);
}
int epollCreate(int size) {
    return fails(Call::EpollCreate) ? -1 : ::epoll_create(size);
}

int epollControl(int epollFd, int operation, int fd, epoll_event* event) {
    return fails(Call::EpollControl) ? -1 : ::epoll_ctl(epollFd, operation, fd, event);
}

int epollWait(int epollFd, epoll_event* events, int maxEvents, int timeoutMs) {
    return fails(Call::EpollWait) ? -1 : ::epoll_wait(epollFd, events, maxEvents, timeoutMs);
}

int schedYield() {
    return ::sched_yield();
}

int sigaction(int signal, const struct sigaction* action, struct sigaction* old) {
    return fails(Call::Sigaction) ? -1 : ::sigaction(signal, action, old);
}

int timerCreate(clockid_t clock, sigevent* event, timer_t* timer) {
    return fails(Call::TimerCreate) ? -1 : ::timer_create(clock, event, timer);
}

int timerSettime(timer_t timer, int flags, const itimerspec* value, itimerspec* old) {
    return fails(Call::TimerSettime) ? -1 : ::timer_settime(timer, flags, value, old);
}

int timerDelete(timer_t timer) {
    return fails(Call::TimerDelete) ? -1 : ::timer_delete(timer);
}

std::int64_t steadyNanoseconds() {
    return Virtual::now();
}

/// With the clock held a sleep takes no time of the host's: the clock moves on by it.
int sleepNanoseconds(std::int64_t duration, std::int64_t* remaining) {
    if (remaining != nullptr) *remaining = 0;
    if (fails(Call::Sleep)) {
        if (remaining != nullptr) *remaining = duration / 2;
        return -1;
    }
    Virtual::ControlBlock& block = Virtual::control();
    if (block.pace.load() == static_cast<std::uint32_t>(Virtual::Pace::Lockstep)) {
        block.clock += duration;
        return 0;
    }
    const timespec wanted = {static_cast<time_t>(duration / 1'000'000'000),
                             static_cast<long>(duration % 1'000'000'000)};
    timespec rest = {};
    const int result = ::nanosleep(&wanted, &rest);
    if (remaining != nullptr) *remaining = std::int64_t{rest.tv_sec} * 1'000'000'000 + rest.tv_nsec;
    return result;
}

}  // namespace Platform
