#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/event/serverconnection.h"
#include "faultmatrix.h"
#include "server.h"

namespace {

constexpr const char* file = "apps/common/event/serverconnection.cpp";
constexpr const char* gate = "/message-broker-ready";
constexpr const char* socketPath = "/var/volatile/message-broker.socket";

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

FaultRow afterRefusal(Call call, const std::vector<int>& values, Outcome outcome) {
    return {.file = file,
            .operation = "ServerConnection",
            .phase = Phase::StartUp,
            .call = call,
            .detail = "(after a refused connect)",
            .faults = errors(values),
            .outcome = outcome,
            .run = connectRefused};
}

}  // namespace

FaultRows connectRows() {
    const auto openErrors = errors({EACCES, EEXIST, EINTR, EINVAL, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM});
    const auto socketErrors =
        errors({EACCES, EAFNOSUPPORT, EINTR, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT});
    return {
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SemOpen,
         .where = {.path = gate},
         .faults = openErrors,
         .outcome = Outcome::Retried,
         .text = "20 tries in all",
         .run = connect},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SemOpen,
         .detail = "(20th try)",
         .where = {.nth = 20, .path = gate},
         .faults = openErrors,
         .text = "sem_open: <error>",
         .run = connectWithoutGate},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SchedYield,
         .faults = errors({EINTR, ENOSYS}),
         .outcome = Outcome::Ignored,
         .run = connectAtTheSecondTry},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SemWait,
         .faults = errors({EAGAIN, EINTR, EINVAL}),
         .text = "sem_wait: <error>",
         .run = connectInVain},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::Socket,
         .faults = socketErrors,
         .text = "epoll_ctl: Bad file descriptor",
         .run = connectInVain},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::Socket,
         .faults = answers(0),
         .text = "socket: Success",
         .run = connectInVain},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::Connect,
         .where = {.path = socketPath},
         .faults = errors({EACCES, EADDRINUSE, EAGAIN, EBADF, ECONNREFUSED, EINTR, ELOOP, ENAMETOOLONG, ENOENT, ENOTDIR,
                           ENOTSOCK, EPERM, EPROTOTYPE, ETIMEDOUT}),
         .text = "connect: <error>",
         .run = connectInVain},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SemPost,
         .faults = errors({EINTR, EINVAL, EOVERFLOW}),
         .text = "sem_post: <error>",
         .run = connectWithoutPassingOn},
        {.file = file,
         .operation = "ServerConnection",
         .phase = Phase::StartUp,
         .call = Call::SemClose,
         .faults = errors({EINTR, EINVAL}),
         .outcome = Outcome::Ignored,
         .run = connect},
        afterRefusal(Call::Shutdown, {EBADF, EINTR, EINVAL, ENOTCONN, ENOTSOCK}, Outcome::Ignored),
        afterRefusal(Call::Poll, {EINTR}, Outcome::Retried),
        afterRefusal(Call::Poll, {EFAULT, EINVAL, ENOMEM}, Outcome::Ignored),
        afterRefusal(Call::Read, {EINTR}, Outcome::Retried),
        afterRefusal(Call::Read, {EAGAIN, EBADF, ECONNRESET, EFAULT, EINVAL, EIO}, Outcome::Ignored),
        afterRefusal(Call::Close, {EBADF, EINTR, EIO}, Outcome::Ignored),
        afterRefusal(Call::SemPost, {EINTR, EINVAL, EOVERFLOW}, Outcome::Ignored),
        afterRefusal(Call::SemClose, {EINTR, EINVAL}, Outcome::Ignored),
    };
}
