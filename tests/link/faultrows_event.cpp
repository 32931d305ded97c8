#include <errno.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "apps/common/event/eventpoll.h"
#include "faultmatrix.h"

namespace {

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
    const Faults controlErrors = {EBADF, EEXIST, EINTR, EINVAL, ELOOP, ENOENT, ENOMEM, ENOSPC, EPERM};

    FaultTable table("apps/common/event/eventpoll.cpp");
    table.operation("EventPoll", Phase::StartUp);
    table.fatal(construct, {Call::Sigaction, "(SIGINT)"}, {EFAULT, EINTR, EINVAL}, "sigaction: <error>");
    table.fatal(construct, {Call::Sigaction, "(SIGPIPE)", {.nth = 4}}, {EFAULT, EINTR, EINVAL}, "sigaction: <error>");
    table.fatal(construct, Call::EpollCreate, {EINTR, EINVAL, EMFILE, ENFILE, ENOMEM}, "epoll_create: <error>");
    table.fatal(construct, Call::Fcntl, {EBADF, EINTR, EINVAL}, "epoll_create: <error>");
    table.operation("EventPoll::add", Phase::StartUp);
    table.fatal(add, Call::EpollControl, controlErrors, "epoll_ctl: <error>");
    table.operation("EventPoll::remove", Phase::Running);
    table.fatal(remove, Call::EpollControl, controlErrors, "epoll_ctl: <error>");
    table.operation("EventPoll::wait", Phase::Running);
    table.fatal(wait, Call::EpollWait, {EBADF, EFAULT, EINVAL}, "epoll_wait: <error>");
    table.ignored(wait, Call::EpollWait, {EINTR}, "the result is 0, interrupted");
    table.ignored(waitWithAlarm, {Call::EpollWait, "(after SIGALRM)"}, {EINTR}, "the result is 1, timer expired");
    table.operation("EventPoll::setTimer", Phase::Running);
    table.fatal(setTimer, Call::TimerCreate, {EAGAIN, EINTR, EINVAL, ENOMEM}, "timer create: <error>");
    table.fatal(setTimer, Call::TimerSettime, {EFAULT, EINTR, EINVAL}, "timer set: <error>");
    table.ignored(endTimer, Call::TimerDelete, {EINTR, EINVAL});
    table.operation("EventPoll::close", Phase::Running);
    table.ignored(close, Call::Close, {EBADF, EINTR, EIO});
    return table.rows();
}
