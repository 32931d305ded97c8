#pragma once

#include <time.h>

#include <cstdint>
#include <functional>
#include <utility>

/// The process's only way to wait: epoll with a periodic timer and the process's signals. One instance a process, as
/// its flags are; one thread. Failures of the system are fatal (std::runtime_error).
class EventPoll {
  public:
    enum What : int { Priority = 0, Readable = 1, HangUp = 2 };
    enum Result : int { Interrupted = 0, TimerExpired = 1, TimedOut = 2, Handled = 3, Stopped = 4 };

    /// Registered by address: it must live until `remove`, and must not be destroyed by another client's operation.
    class Callback {
      public:
        virtual void onPollEvent(int what) = 0;
        virtual ~Callback() = default;
    };

    /// A client that is a callable. An empty one throws std::bad_function_call when its event comes.
    class FunctionCallback final : public Callback {
      public:
        explicit FunctionCallback(std::function<void(int what)> function) : function_(std::move(function)) {}
        void onPollEvent(int what) override { function_(what); }

      private:
        std::function<void(int what)> function_;
    };

    /// Takes over SIGINT, SIGTERM and SIGALRM for the process, and ignores SIGPIPE, so that writing to a dead socket
    /// fails instead of killing the process.
    EventPoll();
    EventPoll(const EventPoll&) = delete;
    EventPoll& operator=(const EventPoll&) = delete;
    ~EventPoll();

    /// `events` is a mask of EPOLLIN, EPOLLPRI...; a null client has its events logged only.
    void add(int fd, Callback* client, std::uint32_t events);
    void remove(int fd);
    /// Period of the timer; -1 ends it. The first call that is not -1 makes it.
    void setTimer(int milliseconds);
    /// Handles at most 8 descriptors; repeat while the result is Handled to drain them all. `timeoutMs` -1 waits
    /// without end. With `ignoreStop` a stop request does not end the wait. Allocates nothing.
    Result wait(int timeoutMs, bool ignoreStop = false);
    /// Whether a signal other than SIGALRM arrived, in this process, ever.
    static bool stopRequested();
    void close();

  private:
    int epollFd_ = -1;
    timer_t timer_ = nullptr;
    // The first timer of a process may well have the handle 0, so the handle does not tell whether there is one.
    bool hasTimer_ = false;

    void createTimer();
    void deleteTimer();
};
