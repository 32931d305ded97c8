#include <errno.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "apps/common/event/eventpoll.h"
#include "faultmatrix.h"

namespace {

constexpr const char* file = "apps/common/event/eventpoll.cpp";

struct Ends {
    int fds[2] = {-1, -1};
    Ends() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds), 0); }
    Ends(const Ends&) = delete;
    Ends& operator=(const Ends&) = delete;
    ~Ends() {
        ::close(fds[0]);
        ::close(fds[1]);
    }
};

void construct(const Rig& rig) {
    rig.arm();
    const EventPoll poll;
}

void add(const Rig& rig) {
    const Ends ends;
    EventPoll poll;
    rig.arm();
    poll.add(ends.fds[0], nullptr, EPOLLIN);
}

void remove(const Rig& rig) {
    const Ends ends;
    EventPoll poll;
    poll.add(ends.fds[0], nullptr, EPOLLIN);
    rig.arm();
    poll.remove(ends.fds[0]);
}

void wait(const Rig& rig) {
    EventPoll poll;
    rig.arm();
    EXPECT_EQ(poll.wait(0), EventPoll::Interrupted);
}

void waitWithAlarm(const Rig& rig) {
    EventPoll poll;
    ::raise(SIGALRM);
    rig.arm();
    EXPECT_EQ(poll.wait(0), EventPoll::TimerExpired);
}

void setTimer(const Rig& rig) {
    EventPoll poll;
    rig.arm();
    poll.setTimer(10'000);
}

// The timer that is not deleted stays for the life of the process, so it must not be armed.
void endTimer(const Rig& rig) {
    EventPoll poll;
    poll.setTimer(0);
    rig.arm();
    poll.setTimer(-1);
    poll.setTimer(-1);
}

void close(const Rig& rig) {
    EventPoll poll;
    rig.arm();
    poll.close();
    poll.close();
}

}  // namespace

FaultRows eventPollRows() {
    const auto controlErrors = errors({EBADF, EEXIST, EINTR, EINVAL, ELOOP, ENOENT, ENOMEM, ENOSPC, EPERM});
    return {
        {.file = file,
         .operation = "EventPoll",
         .phase = Phase::StartUp,
         .call = Call::Sigaction,
         .detail = "(SIGINT)",
         .faults = errors({EFAULT, EINTR, EINVAL}),
         .text = "sigaction: <error>",
         .run = construct},
        {.file = file,
         .operation = "EventPoll",
         .phase = Phase::StartUp,
         .call = Call::Sigaction,
         .detail = "(SIGPIPE)",
         .where = {.nth = 4},
         .faults = errors({EFAULT, EINTR, EINVAL}),
         .text = "sigaction: <error>",
         .run = construct},
        {.file = file,
         .operation = "EventPoll",
         .phase = Phase::StartUp,
         .call = Call::EpollCreate,
         .faults = errors({EINTR, EINVAL, EMFILE, ENFILE, ENOMEM}),
         .text = "epoll_create: <error>",
         .run = construct},
        {.file = file,
         .operation = "EventPoll",
         .phase = Phase::StartUp,
         .call = Call::Fcntl,
         .faults = errors({EBADF, EINTR, EINVAL}),
         .text = "epoll_create: <error>",
         .run = construct},
        {.file = file,
         .operation = "EventPoll::add",
         .phase = Phase::StartUp,
         .call = Call::EpollControl,
         .faults = controlErrors,
         .text = "epoll_ctl: <error>",
         .run = add},
        {.file = file,
         .operation = "EventPoll::remove",
         .phase = Phase::Running,
         .call = Call::EpollControl,
         .faults = controlErrors,
         .text = "epoll_ctl: <error>",
         .run = remove},
        {.file = file,
         .operation = "EventPoll::wait",
         .phase = Phase::Running,
         .call = Call::EpollWait,
         .faults = errors({EBADF, EFAULT, EINVAL}),
         .text = "epoll_wait: <error>",
         .run = wait},
        {.file = file,
         .operation = "EventPoll::wait",
         .phase = Phase::Running,
         .call = Call::EpollWait,
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .text = "the result is 0, interrupted",
         .run = wait},
        {.file = file,
         .operation = "EventPoll::wait",
         .phase = Phase::Running,
         .call = Call::EpollWait,
         .detail = "(after SIGALRM)",
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .text = "the result is 1, timer expired",
         .run = waitWithAlarm},
        {.file = file,
         .operation = "EventPoll::setTimer",
         .phase = Phase::Running,
         .call = Call::TimerCreate,
         .faults = errors({EAGAIN, EINTR, EINVAL, ENOMEM}),
         .text = "timer create: <error>",
         .run = setTimer},
        {.file = file,
         .operation = "EventPoll::setTimer",
         .phase = Phase::Running,
         .call = Call::TimerSettime,
         .faults = errors({EFAULT, EINTR, EINVAL}),
         .text = "timer set: <error>",
         .run = setTimer},
        {.file = file,
         .operation = "EventPoll::setTimer",
         .phase = Phase::Running,
         .call = Call::TimerDelete,
         .faults = errors({EINTR, EINVAL}),
         .outcome = Outcome::Ignored,
         .run = endTimer},
        {.file = file,
         .operation = "EventPoll::close",
         .phase = Phase::Running,
         .call = Call::Close,
         .faults = errors({EBADF, EINTR, EIO}),
         .outcome = Outcome::Ignored,
         .run = close},
    };
}
