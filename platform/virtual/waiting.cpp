#include <sched.h>

#include <cerrno>

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

int poll(pollfd* fds, nfds_t count, int timeoutMs) {
    const auto verdict = strike(Call::Poll, count > 0 ? Virtual::pathOf(fds[0].fd) : "");
    if (verdict.instead) return static_cast<int>(verdict.value);
    // In a replay nothing else comes, so whoever polls may read: it finds what was read then.
    if (replayer() != nullptr) {
        for (nfds_t i = 0; i < count; ++i) fds[i].revents = fds[i].events;
        return static_cast<int>(count);
    }
    return ::poll(fds, count, timeoutMs);
}

int epollCreate(int size) {
    const auto verdict = strike(Call::EpollCreate);
    return verdict.instead ? static_cast<int>(verdict.value) : ::epoll_create(size);
}

int epollControl(int epollFd, int operation, int fd, epoll_event* event) {
    const auto verdict = strike(Call::EpollControl, Virtual::pathOf(fd));
    if (verdict.instead) return static_cast<int>(verdict.value);
    if (auto* tape = replayer()) {
        tape->registerForWait(fd, operation == EPOLL_CTL_DEL ? nullptr : event);
        return 0;
    }
    const int result = ::epoll_ctl(epollFd, operation, fd, event);
    if (recorder() != nullptr && result == 0 && operation != EPOLL_CTL_DEL) Virtual::rememberData(fd, event->data.u64);
    return result;
}

int epollWait(int epollFd, epoll_event* events, int maxEvents, int timeoutMs) {
    const auto verdict = strike(Call::EpollWait);
    if (verdict.instead) return static_cast<int>(verdict.value);
    if (auto* tape = replayer()) return tape->wait(events, maxEvents);
    const int count = ::epoll_wait(epollFd, events, maxEvents, timeoutMs);
    if (auto* to = recorder())
        for (int i = 0; i < count; ++i)
            to->waited(Virtual::pathByData(events[i].data.u64), events[i].events, count - 1 - i);
    return count;
}

int schedYield() {
    const auto verdict = strike(Call::SchedYield);
    return verdict.instead ? static_cast<int>(verdict.value) : ::sched_yield();
}

int sigaction(int signal, const struct sigaction* action, struct sigaction* old) {
    const auto verdict = strike(Call::Sigaction);
    return verdict.instead ? static_cast<int>(verdict.value) : ::sigaction(signal, action, old);
}

int timerCreate(clockid_t clock, sigevent* event, timer_t* timer) {
    const auto verdict = strike(Call::TimerCreate);
    return verdict.instead ? static_cast<int>(verdict.value) : ::timer_create(clock, event, timer);
}

int timerSettime(timer_t timer, int flags, const itimerspec* value, itimerspec* old) {
    const auto verdict = strike(Call::TimerSettime);
    return verdict.instead ? static_cast<int>(verdict.value) : ::timer_settime(timer, flags, value, old);
}

int timerDelete(timer_t timer) {
    const auto verdict = strike(Call::TimerDelete);
    return verdict.instead ? static_cast<int>(verdict.value) : ::timer_delete(timer);
}

std::int64_t steadyNanoseconds() {
    if (auto* to = recorder()) return to->time();
    if (auto* tape = replayer()) return tape->time();
    return Instance::current().control().time();
}

// On a held clock time passes by stepping it: whoever sleeps steps it over the time slept, and is back at once.
int sleepNanoseconds(std::int64_t duration, std::int64_t* remaining) {
    const auto verdict = strike(Call::Sleep);
    if (verdict.instead) {
        if (remaining != nullptr) *remaining = verdict.value == 0 ? 0 : duration;
        return static_cast<int>(verdict.value);
    }
    if (auto* tape = replayer()) {
        tape->slept(duration);
        if (remaining != nullptr) *remaining = 0;
        return 0;
    }
    auto& block = Instance::current().control();
    if (block.clockHeld != 0) {
        block.heldTime += duration;
        if (auto* to = recorder()) to->slept(duration);
        if (remaining != nullptr) *remaining = 0;
        return 0;
    }
    const timespec wanted = {static_cast<time_t>(duration / 1'000'000'000),
                             static_cast<long>(duration % 1'000'000'000)};
    timespec rest = {};
    const int result = ::nanosleep(&wanted, &rest);
    const std::int64_t left = std::int64_t{rest.tv_sec} * 1'000'000'000 + rest.tv_nsec;
    if (remaining != nullptr) *remaining = left;
    if (auto* to = recorder()) to->slept(duration - left);
    return result;
}

}  // namespace Platform
