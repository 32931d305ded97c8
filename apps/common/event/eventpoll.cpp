#include "apps/common/event/eventpoll.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/epoll.h>

#include <atomic>
#include <bit>
#include <cstring>
#include <iterator>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

// Written by the signal handler: lock-free, or the handler would not be async-signal-safe.
constinit std::atomic<std::uint8_t> timerExpiredFlag{0};
constinit std::atomic<std::uint32_t> pendingSignals{0};
constinit std::atomic<std::uint8_t> stopFlag{0};
static_assert(std::atomic<std::uint8_t>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);

constexpr int maxEvents = 8;

void handleSignal(int number) {
    if (number == SIGALRM) {
        timerExpiredFlag = 1;
        return;
    }
    if (number < 32) pendingSignals |= std::uint32_t{1} << number;
    stopFlag = 1;
}

void installSignals() {
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    sigfillset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM, SIGALRM}) {
        if (Platform::sigaction(number, &action, nullptr) < 0) TERN_ERRNO_FATAL("sigaction");
    }
    action.sa_handler = SIG_IGN;
    if (Platform::sigaction(SIGPIPE, &action, nullptr) < 0) TERN_ERRNO_FATAL("sigaction");
}

void logPendingSignals() {
    if (pendingSignals.load() == 0) return;
    for (std::uint32_t rest = pendingSignals.exchange(0); rest != 0; rest &= rest - 1) {
        const int number = std::countr_zero(rest);
        TERN_LOG(Log::LogLight, "SIG %i: %s", number, strsignal(number));
    }
}

bool takeTimerExpired() {
    return timerExpiredFlag.load() != 0 && timerExpiredFlag.exchange(0) != 0;
}

void dispatch(const epoll_event& event) {
    auto* client = static_cast<EventPoll::Callback*>(event.data.ptr);
    if (client == nullptr) {
        TERN_LOG(Log::Warn, "Unhandled event: %08x", event.events);
        return;
    }
    TERN_LOG(Log::DebugAll, "Call    client %p for events %08x", static_cast<void*>(client), event.events);
    if ((event.events & EPOLLHUP) != 0) {
        client->onPollEvent(EventPoll::HangUp);
    } else if ((event.events & EPOLLPRI) != 0) {
        client->onPollEvent(EventPoll::Priority);
    } else if ((event.events & EPOLLIN) != 0) {
        client->onPollEvent(EventPoll::Readable);
    }
}

}  // namespace

EventPoll::EventPoll() {
    installSignals();
    epollFd_ = Platform::epollCreate(1);
    if (epollFd_ < 0) TERN_ERRNO_FATAL("epoll_create");
    if (Platform::fcntl(epollFd_, F_SETFD, FD_CLOEXEC) < 0) {
        const int error = errno;
        close();
        errno = error;
        TERN_ERRNO_FATAL("epoll_create");
    }
}

EventPoll::~EventPoll() {
    deleteTimer();
    close();
}

void EventPoll::add(int fd, Callback* client, std::uint32_t events) {
    if (epollFd_ < 0) TERN_FATAL("add called on an already closed handle");
    epoll_event event = {};
    event.events = events;
    event.data.ptr = client;
    if (Platform::epollControl(epollFd_, EPOLL_CTL_ADD, fd, &event) < 0) TERN_ERRNO_FATAL("epoll_ctl");
    TERN_LOG(Log::DebugMost, "Add new client %i/%p", fd, static_cast<void*>(client));
}

void EventPoll::remove(int fd) {
    if (epollFd_ < 0) return;
    if (Platform::epollControl(epollFd_, EPOLL_CTL_DEL, fd, nullptr) < 0) TERN_ERRNO_FATAL("epoll_ctl");
    TERN_LOG(Log::DebugMost, "Remove  client %i", fd);
}

void EventPoll::setTimer(int milliseconds) {
    if (milliseconds == -1) {
        deleteTimer();
        return;
    }
    if (!hasTimer_) createTimer();
    itimerspec value = {};
    value.it_value.tv_sec = milliseconds / 1000;
    value.it_value.tv_nsec = milliseconds % 1000 * 1'000'000L;
    value.it_interval = value.it_value;
    if (Platform::timerSettime(timer_, 0, &value, nullptr) < 0) TERN_ERRNO_FATAL("timer set");
}

EventPoll::Result EventPoll::wait(int timeoutMs, bool ignoreStop) {
    logPendingSignals();
    if (!ignoreStop && stopRequested()) return Stopped;
    if (epollFd_ < 0) TERN_FATAL("wait called on an already closed handle");
    epoll_event events[maxEvents];
    const int count = Platform::epollWait(epollFd_, events, maxEvents, timeoutMs);
    if (count < 0) {
        if (errno != EINTR) TERN_ERRNO_FATAL("epoll_wait");
        return takeTimerExpired() ? TimerExpired : Interrupted;
    }
    if (count == 0) return TimedOut;
    for (int i = 0; i < count; ++i) dispatch(events[i]);
    return takeTimerExpired() ? TimerExpired : Handled;
}

bool EventPoll::stopRequested() {
    return stopFlag.load() != 0;
}

void EventPoll::close() {
    if (epollFd_ >= 0) Platform::close(epollFd_);
    epollFd_ = -1;
}

void EventPoll::createTimer() {
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    event.sigev_value.sival_ptr = this;
    if (Platform::timerCreate(CLOCK_MONOTONIC, &event, &timer_) < 0) TERN_ERRNO_FATAL("timer create");
    hasTimer_ = true;
}

void EventPoll::deleteTimer() {
    if (hasTimer_) Platform::timerDelete(timer_);
    timer_ = nullptr;
    hasTimer_ = false;
}
