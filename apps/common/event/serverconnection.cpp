#include "apps/common/event/serverconnection.h"

#include <errno.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

constexpr const char* readySemaphore = "/message-broker-ready";
constexpr const char* socketPath = "/var/volatile/message-broker.socket";
constexpr int gateTries = 20;
constexpr std::size_t blockRecords = 256;
constexpr int drainTimeoutMs = 100;
// A server that goes on writing after the hang-up must not hold the process for ever.
constexpr std::size_t drainLimit = 4U << 20;

/// The server's gate, held from the constructor on. Leaving by an exception passes it on too, or a client that failed
/// would lock out its own successor.
class ReadyGate {
  public:
    ReadyGate() {
        while ((semaphore_ = Platform::semOpen(readySemaphore, 0)) == SEM_FAILED) {
            if (++failedTries_ == gateTries) TERN_ERRNO_FATAL("sem_open");
            Platform::schedYield();
        }
        if (Platform::semWait(semaphore_) == 0) return;
        const int error = errno;
        Platform::semClose(semaphore_);
        errno = error;
        TERN_ERRNO_FATAL("sem_wait");
    }
    ReadyGate(const ReadyGate&) = delete;
    ReadyGate& operator=(const ReadyGate&) = delete;
    ~ReadyGate() {
        if (!passed_) Platform::semPost(semaphore_);
        Platform::semClose(semaphore_);
    }

    void passOn() {
        passed_ = true;
        if (Platform::semPost(semaphore_) < 0) TERN_ERRNO_FATAL("sem_post");
    }
    int failedTries() const { return failedTries_; }

  private:
    sem_t* semaphore_ = SEM_FAILED;
    int failedTries_ = 0;
    bool passed_ = false;
};

void readAway(int fd) {
    char waste[256];
    for (std::size_t total = 0; total < drainLimit;) {
        pollfd entry = {fd, POLLIN, 0};
        const int ready = Platform::poll(&entry, 1, drainTimeoutMs);
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return;
        const ssize_t size = Platform::read(fd, waste, sizeof waste);
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return;
        total += static_cast<std::size_t>(size);
    }
}

}  // namespace

ServerConnection::ServerConnection(EventPoll* poll) : poll_(poll) {
    TERN_LOG(Log::LogLight, "Waiting for server");
    ReadyGate gate;
    openSocket();
    connect();
    TERN_LOG(Log::LogLight, "Connected after %i attempts", gate.failedTries());
    try {
        gate.passOn();
    } catch (...) {
        close();
        throw;
    }
    setEventConnection(this);
}

ServerConnection::~ServerConnection() {
    if (eventConnection() == this) setEventConnection(nullptr);
    close();
}

// A failed socket call is not told apart here: its descriptor of -1 is refused by the registration.
void ServerConnection::openSocket() {
    socketFd_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socketFd_ == 0) TERN_ERRNO_FATAL("socket");
    try {
        poll_->add(socketFd_, this, EPOLLIN);
    } catch (...) {
        closeSocket();
        throw;
    }
}

void ServerConnection::connect() {
    if (Platform::connectUnix(socketFd_, socketPath) == 0) return;
    const int error = errno;
    close();
    errno = error;
    TERN_ERRNO_FATAL("connect");
}

void ServerConnection::send(const Notify& notify) {
    writeRecords(&notify, 1);
}

void ServerConnection::subscribe(const Notify& notify) {
    const Notify records[] = {{static_cast<std::uint32_t>(ServerMessage::Subscribe), 0, 0}, notify};
    writeRecords(records, 2);
}

void ServerConnection::subscribeAll() {
    send({static_cast<std::uint32_t>(ServerMessage::SubscribeAll), 0, 0});
}

void ServerConnection::onPollEvent(int what) {
    if (what == EventPoll::Readable) readRecords();
    if (what == EventPoll::HangUp) close();
}

void ServerConnection::close() {
    if (socketFd_ < 0) return;
    poll_->remove(socketFd_);
    Platform::shutdown(socketFd_, SHUT_WR);
    readAway(socketFd_);
    closeSocket();
}

void ServerConnection::closeSocket() {
    if (socketFd_ >= 0) Platform::close(socketFd_);
    socketFd_ = -1;
}

void ServerConnection::writeRecords(const Notify* records, std::size_t count) {
    const std::size_t size = count * sizeof(Notify);
    if (Platform::write(socketFd_, records, size) != static_cast<ssize_t>(size)) {
        TERN_FATAL("Could not send message to server");
    }
}

// A server that ends only its sending side raises no hang-up, but the socket stays readable for ever.
void ServerConnection::readRecords() {
    Notify records[blockRecords] = {};
    const NotifiesRead got = readNotifyBlock(socketFd_, records, blockRecords);
    deliver({records, got.count});
    if (got.stream == StreamState::Ended) close();
}

// The handler is asked for once a block, not once a notice, and eight calls stand in a row: a call by the table is
// predicted better where it has a place of its own.
void ServerConnection::deliver(std::span<const Notify> block) const {
    if (EventHandler* const handler = handler_; handler != nullptr) {
#pragma GCC unroll 8
        for (const Notify& notify : block) handler->onNotify(notify);
    } else {
        for (const Notify& notify : block) logUnhandled(notify.id);
    }
}

void ServerConnection::logUnhandled(std::uint32_t id) const {
    if (id < names_.size()) {
        TERN_LOG(Log::Warn, "Unhandled event: %s", names_[id]);
    } else {
        TERN_LOG(Log::Warn, "Unhandled event: %u", id);
    }
}
