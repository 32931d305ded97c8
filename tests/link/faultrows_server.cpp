#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/event/serverconnection.h"
#include "faultmatrix.h"
#include "server.h"

namespace {

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
    const Faults writeErrors = {EAGAIN, EBADF, ECONNRESET, EDESTADDRREQ, EFAULT,   EINTR,
                                EINVAL, EIO,   ENOBUFS,    ENOMEM,       ENOTCONN, EPIPE};
    const SeamCall write = {Call::Write, {.path = Server::socketPath}};
    const char* const unsent = "Could not send message to server";
    const char* const noMore = "nothing more is read away";

    FaultTable table("apps/common/event/serverconnection.cpp");
    table.operation("ServerConnection::subscribe", Phase::StartUp);
    table.fatal(subscribe, write, writeErrors, unsent);
    table.fatal(subscribe, write, shorts(0, 23), unsent);
    table.operation("ServerConnection::send", Phase::Running);
    table.fatal(send, write, writeErrors, unsent);
    table.fatal(send, write, shorts(0, 11), unsent);
    table.operation("ServerConnection::close", Phase::Running);
    table.ignored(hangUp, Call::Shutdown, {EBADF, EINTR, EINVAL, ENOTCONN, ENOTSOCK});
    table.retried(hangUp, Call::Poll, {EINTR});
    table.ignored(hangUp, Call::Poll, {EFAULT, EINVAL, ENOMEM}, noMore);
    table.retried(hangUp, Call::Read, {EINTR});
    table.ignored(hangUp, Call::Read, {EAGAIN, EBADF, ECONNRESET, EFAULT, EINVAL, EIO}, noMore);
    table.ignored(hangUp, {Call::Close, {.path = Server::socketPath}}, {EBADF, EINTR, EIO});
    return table.rows();
}

FaultRows notifyRows() {
    FaultTable table("apps/common/event/notify.cpp");
    table.operation("readNotifies", Phase::Running);
    table.fatal(read, Call::Read, {EAGAIN, EBADF, ECONNRESET, EFAULT, EINTR, EINVAL, EIO}, "Read error");
    table.ignored(readSplit, Call::Read, shorts(1, 11), "the bytes are dropped with a warning");
    table.operation("ServerConnection::onPollEvent", Phase::Running);
    table.ignored(readEnd, {Call::Read, "(end of the stream)"}, answers(0), "the connection is closed as at a hang-up");
    return table.rows();
}
