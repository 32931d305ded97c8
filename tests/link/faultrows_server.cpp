#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/event/serverconnection.h"
#include "faultmatrix.h"
#include "server.h"

namespace {

constexpr const char* file = "apps/common/event/serverconnection.cpp";
constexpr const char* notifyFile = "apps/common/event/notify.cpp";
constexpr const char* socketPath = "/var/volatile/message-broker.socket";

struct Connected {
    Server server;
    EventPoll poll;
    ServerConnection connection{&poll};
    Connected() { server.accept(); }
    ~Connected() { server.die(); }
};

void send(const Rig& rig) {
    Connected link;
    rig.arm();
    sendEvent(7, 0, 0);
}

void subscribe(const Rig& rig) {
    Connected link;
    rig.arm();
    link.connection.subscribe({7, 0, 0});
}

void read(const Rig& rig) {
    Connected link;
    link.server.send({{7, 0, 0}});
    rig.arm();
    EXPECT_EQ(link.poll.wait(0), EventPoll::Handled);
    rig.done();
}

void readSplit(const Rig& rig) {
    read(rig);
    EXPECT_NE(rig.world.logText().find("of a split record"), std::string::npos);
}

void readEnd(const Rig& rig) {
    Connected link;
    link.server.send({{7, 0, 0}});
    Platform::Virtual::onCall(Call::Shutdown, rig.done);
    rig.arm();
    link.poll.wait(0);
    EXPECT_FALSE(link.connection.isOpen());
}

/// The peer's last data is waiting, and the peer is gone.
void hangUp(const Rig& rig) {
    Connected link;
    link.server.send({{7, 0, 0}});
    link.server.die();
    rig.arm();
    EXPECT_EQ(link.poll.wait(0), EventPoll::Handled);
    rig.done();
    EXPECT_FALSE(link.connection.isOpen());
}

}  // namespace

FaultRows serverRows() {
    // ECONNRESET comes to a sender that stalls while the server dies.
    const auto writeErrors =
        errors({EAGAIN, EBADF, ECONNRESET, EDESTADDRREQ, EFAULT, EINTR, EINVAL, EIO, ENOBUFS, ENOMEM, ENOTCONN, EPIPE});
    const char* const unsent = "Could not send message to server";
    return {
        {.file = file,
         .operation = "ServerConnection::subscribe",
         .phase = Phase::StartUp,
         .call = Call::Write,
         .where = {.path = socketPath},
         .faults = writeErrors,
         .text = unsent,
         .run = subscribe},
        {.file = file,
         .operation = "ServerConnection::subscribe",
         .phase = Phase::StartUp,
         .call = Call::Write,
         .where = {.path = socketPath},
         .faults = shorts(0, 23),
         .text = unsent,
         .run = subscribe},
        {.file = file,
         .operation = "ServerConnection::send",
         .phase = Phase::Running,
         .call = Call::Write,
         .where = {.path = socketPath},
         .faults = writeErrors,
         .text = unsent,
         .run = send},
        {.file = file,
         .operation = "ServerConnection::send",
         .phase = Phase::Running,
         .call = Call::Write,
         .where = {.path = socketPath},
         .faults = shorts(0, 11),
         .text = unsent,
         .run = send},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Shutdown,
         .faults = errors({EBADF, EINTR, EINVAL, ENOTCONN, ENOTSOCK}),
         .outcome = Outcome::Ignored,
         .run = hangUp},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Poll,
         .faults = errors({EINTR}),
         .outcome = Outcome::Retried,
         .run = hangUp},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Poll,
         .faults = errors({EFAULT, EINVAL, ENOMEM}),
         .outcome = Outcome::Ignored,
         .text = "nothing more is read away",
         .run = hangUp},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Read,
         .faults = errors({EINTR}),
         .outcome = Outcome::Retried,
         .run = hangUp},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Read,
         .faults = errors({EAGAIN, EBADF, ECONNRESET, EFAULT, EINVAL, EIO}),
         .outcome = Outcome::Ignored,
         .text = "nothing more is read away",
         .run = hangUp},
        {.file = file,
         .operation = "ServerConnection::close",
         .phase = Phase::Running,
         .call = Call::Close,
         .where = {.path = socketPath},
         .faults = errors({EBADF, EINTR, EIO}),
         .outcome = Outcome::Ignored,
         .run = hangUp},
        {.file = notifyFile,
         .operation = "readNotifies",
         .phase = Phase::Running,
         .call = Call::Read,
         .faults = errors({EAGAIN, EBADF, ECONNRESET, EFAULT, EINTR, EINVAL, EIO}),
         .text = "Read error",
         .run = read},
        {.file = notifyFile,
         .operation = "readNotifies",
         .phase = Phase::Running,
         .call = Call::Read,
         .faults = shorts(1, 11),
         .outcome = Outcome::Ignored,
         .text = "the bytes are dropped with a warning",
         .run = readSplit},
        {.file = notifyFile,
         .operation = "ServerConnection::onPollEvent",
         .phase = Phase::Running,
         .call = Call::Read,
         .detail = "(end of the stream)",
         .faults = answers(0),
         .outcome = Outcome::Ignored,
         .text = "the connection is closed as at a hang-up",
         .run = readEnd},
    };
}
