#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/event/serverconnection.h"
#include "faultmatrix.h"
#include "server.h"

namespace {

void connect(const Rig& rig) {
    Server server;
    EventPoll poll;
    rig.arm();
    const ServerConnection connection(&poll);
    rig.done();
    server.die();
}

void connectAtTheSecondTry(const Rig& rig) {
    Platform::Virtual::failCall(Call::SemOpen, ENOENT, {.nth = 2});
    connect(rig);
}

/// A failed client must leave the gate to its successor, and nothing in the event poll.
void connectInVain(const Rig& rig) {
    const Server server;
    EventPoll poll;
    rig.arm();
    try {
        const ServerConnection connection(&poll);
    } catch (...) {
        EXPECT_EQ(server.gateCount(), 1);
        EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
        throw;
    }
}

void connectWithoutPassingOn(const Rig& rig) {
    Server server;
    EventPoll poll;
    rig.arm();
    try {
        const ServerConnection connection(&poll);
    } catch (...) {
        EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
        EXPECT_EQ(eventConnection(), nullptr);
        throw;
    }
}

void connectWithoutGate(const Rig& rig) {
    Server server;
    server.removeGate();
    EventPoll poll;
    rig.arm();
    const ServerConnection connection(&poll);
}

/// The server does not listen: the client clears up, and whatever fails then, the first failure is the one to tell.
void connectRefused(const Rig& rig) {
    Server server;
    server.die();
    EventPoll poll;
    rig.arm();
    const std::string text = World::fatalTextOf([&] { const ServerConnection connection(&poll); });
    rig.done();
    EXPECT_TRUE(text.ends_with("connect: Connection refused")) << text;
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
}

void addRowsAfterRefusal(FaultTable& table) {
    const auto after = [](Call call) { return SeamCall{call, "(after a refused connect)"}; };
    table.ignored(connectRefused, after(Call::Shutdown), {EBADF, EINTR, EINVAL, ENOTCONN, ENOTSOCK});
    table.retried(connectRefused, after(Call::Poll), {EINTR});
    table.ignored(connectRefused, after(Call::Poll), {EFAULT, EINVAL, ENOMEM});
    table.retried(connectRefused, after(Call::Read), {EINTR});
    table.ignored(connectRefused, after(Call::Read), {EAGAIN, EBADF, ECONNRESET, EFAULT, EINVAL, EIO});
    table.ignored(connectRefused, after(Call::Close), {EBADF, EINTR, EIO});
    table.ignored(connectRefused, after(Call::SemPost), {EINTR, EINVAL, EOVERFLOW});
    table.ignored(connectRefused, after(Call::SemClose), {EINTR, EINVAL});
}

}  // namespace

FaultRows connectRows() {
    const Faults openErrors = {EACCES, EEXIST, EINTR, EINVAL, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM};
    const Faults socketErrors = {EACCES, EAFNOSUPPORT, EINTR, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT};
    const Faults connectErrors = {EACCES,       EADDRINUSE, EAGAIN,  EBADF,    ECONNREFUSED, EINTR,      ELOOP,
                                  ENAMETOOLONG, ENOENT,     ENOTDIR, ENOTSOCK, EPERM,        EPROTOTYPE, ETIMEDOUT};

    FaultTable table("apps/common/event/serverconnection.cpp");
    table.operation("ServerConnection", Phase::StartUp);
    table.retried(connect, {Call::SemOpen, {.path = Server::gateName}}, openErrors, "20 tries in all");
    table.fatal(connectWithoutGate, {Call::SemOpen, "(20th try)", {.nth = 20, .path = Server::gateName}}, openErrors,
                "sem_open: <error>");
    table.ignored(connectAtTheSecondTry, Call::SchedYield, {EINTR, ENOSYS});
    table.fatal(connectInVain, Call::SemWait, {EAGAIN, EINTR, EINVAL}, "sem_wait: <error>");
    table.fatal(connectInVain, Call::Socket, socketErrors, "epoll_ctl: Bad file descriptor");
    table.fatal(connectInVain, Call::Socket, answers(0), "socket: Success");
    table.fatal(connectInVain, {Call::Connect, {.path = Server::socketPath}}, connectErrors, "connect: <error>");
    table.fatal(connectWithoutPassingOn, Call::SemPost, {EINTR, EINVAL, EOVERFLOW}, "sem_post: <error>");
    table.ignored(connect, Call::SemClose, {EINTR, EINVAL});
    addRowsAfterRefusal(table);
    return table.rows();
}
