#include "unit/server/broker.h"

#include <errno.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "apps/common/log/log.h"
#include "model/catalogue/constants.h"
#include "platform/system.h"

namespace Unit {

namespace {

constexpr std::uint32_t subscribeId = 1;
constexpr std::uint32_t unsubscribeId = 2;
constexpr std::uint32_t subscribeAllId = 3;
constexpr std::uint32_t unsubscribeAllId = 4;
constexpr int backlog = 8;
constexpr std::size_t blockSize = 256 * sizeof(Notify);

pid_t peerOf(int fd) {
    ucred credentials = {};
    socklen_t size = sizeof credentials;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 ? credentials.pid : 0;
}

}  // namespace

BrokerClient::BrokerClient(int fd) : fd_(fd), pid_(peerOf(fd)) {}

BrokerClient::~BrokerClient() {
    Platform::close(fd_);
}

void BrokerClient::read(std::vector<Notify>& records) {
    char block[blockSize];
    for (;;) {
        const ssize_t got = Platform::read(fd_, block, sizeof block);
        if (got < 0 && errno == EINTR) continue;
        if (got == 0 || (got < 0 && errno != EAGAIN)) ended_ = true;
        if (got <= 0) break;
        in_.insert(in_.end(), block, block + got);
    }
    const std::size_t whole = in_.size() / sizeof(Notify);
    const std::size_t before = records.size();
    records.resize(before + whole);
    if (whole > 0) std::memcpy(records.data() + before, in_.data(), whole * sizeof(Notify));
    in_.erase(in_.begin(), in_.begin() + static_cast<std::ptrdiff_t>(whole * sizeof(Notify)));
}

bool BrokerClient::subscribe(const Notify& record) {
    if (request_ != 0) {
        want(record.id, request_ == subscribeId);
        request_ = 0;
        return true;
    }
    switch (record.id) {
        case subscribeId:
        case unsubscribeId: request_ = record.id; return true;
        case subscribeAllId: all_ = true; return true;
        case unsubscribeAllId:
            all_ = false;
            wanted_.reset();
            order_.clear();
            return true;
        default: return false;
    }
}

void BrokerClient::want(std::uint32_t id, bool wanted) {
    if (id >= Catalogue::messages.size()) {
        TERN_LOG(Log::Warn, "Process %i asks for the unknown message %u", pid_, id);
        return;
    }
    if (wanted_[id] == wanted) return;
    wanted_[id] = wanted;
    if (wanted) {
        order_.push_back(static_cast<std::uint16_t>(id));
    } else {
        std::erase(order_, static_cast<std::uint16_t>(id));
    }
}

void BrokerClient::queue(const Notify& record) {
    if (ended_) return;
    if (out_.size() > outLimit) {
        TERN_LOG(Log::Error, "Process %i does not read its messages; it is cut off", pid_);
        ended_ = true;
        return;
    }
    const auto* bytes = reinterpret_cast<const char*>(&record);
    out_.insert(out_.end(), bytes, bytes + sizeof record);
}

// In blocks that the kernel takes whole or not at all: of a large piece it takes what there is room for, which may
// end within a record, and the peer drops a record that it is given in two halves.
void BrokerClient::flush(std::size_t tail) {
    const std::size_t whole = out_.size() > tail ? out_.size() - tail : out_.size();
    std::size_t done = 0;
    while (!ended_ && done < whole) {
        const ssize_t written = Platform::write(fd_, out_.data() + done, std::min(whole - done, blockSize));
        if (written > 0) done += static_cast<std::size_t>(written);
        if (written < 0 && errno == EAGAIN) break;
        if (written < 0 && errno != EINTR) ended_ = true;
    }
    out_.erase(out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(done));
}

Broker::~Broker() {
    close();
}

void Broker::open() {
    Platform::unlinkPath(socketPath);
    listening_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listening_ < 0) TERN_ERRNO_FATAL("socket");
    if (Platform::bindUnix(listening_, socketPath) < 0) TERN_ERRNO_FATAL(socketPath);
    if (Platform::listen(listening_, backlog) < 0) TERN_ERRNO_FATAL("listen");
    if (!deaf_) watch(listening_, true);
}

void Broker::close() {
    if (listening_ < 0) return;
    if (!deaf_) watchAll(false);
    clients_.clear();
    inbox_.clear();
    Platform::close(listening_);
    listening_ = -1;
    Platform::unlinkPath(socketPath);
}

void Broker::watch(int fd, bool on) {
    if (on) {
        poll_.add(fd, this, EPOLLIN);
    } else {
        poll_.remove(fd);
    }
}

void Broker::watchAll(bool on) {
    if (listening_ < 0) return;
    watch(listening_, on);
    for (const auto& client : clients_) watch(client->fd(), on);
}

void Broker::setDeaf(bool deaf) {
    if (deaf_ == deaf) return;
    deaf_ = deaf;
    watchAll(!deaf_);
}

void Broker::onPollEvent(int) {
    // One callback for all sockets: which one spoke does not matter, they are few.
    if (immediate_) {
        drain();
    } else {
        readEverything();
    }
}

void Broker::drain() {
    readEverything();
    handleInbox();
}

void Broker::readEverything() {
    if (deaf_ || listening_ < 0) return;
    bool more = true;
    while (more) {
        const bool accepted = acceptAll();
        more = readAll() || accepted;
    }
}

void Broker::handleInbox() {
    const std::vector<Notify> records = std::exchange(inbox_, {});
    for (const Notify& record : records) {
        if (journal_.size() >= journalLimit) journal_.erase(journal_.begin(), journal_.begin() + journalLimit / 2);
        journal_.push_back(record);
        if (!silent_) announce(record);
        listener_.onNotice(record);
    }
}

bool Broker::acceptAll() {
    bool any = false;
    for (;;) {
        const int fd = Platform::accept(listening_, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) return any;
        any = true;
        clients_.push_back(std::make_unique<BrokerClient>(fd));
        if (!deaf_) watch(fd, true);
        TERN_LOG(Log::LogLight, "Process %i has connected", clients_.back()->pid());
    }
}

bool Broker::readAll() {
    bool any = false;
    for (std::size_t i = 0; i < clients_.size(); ++i) {
        BrokerClient& client = *clients_[i];
        if (client.ended()) continue;
        records_.clear();
        client.read(records_);
        any = any || !records_.empty();
        for (const Notify& record : records_) take(client, record);
    }
    return any;
}

void Broker::take(BrokerClient& client, const Notify& record) {
    if (client.subscribe(record)) return;
    if (record.id < Catalogue::messages.size()) {
        inbox_.push_back(record);
    } else {
        TERN_LOG(Log::Warn, "Process %i sends the unknown message %u", client.pid(), record.id);
    }
}

void Broker::announce(const Notify& notice) {
    for (const auto& client : clients_)
        if (client->wants(notice.id)) client->queue(notice);
}

void Broker::flush() {
    for (const auto& client : clients_) client->flush(tail_);
}

void Broker::reap() {
    std::erase_if(clients_, [this](const auto& client) {
        if (!client->ended()) return false;
        TERN_LOG(Log::LogLight, "Process %i has gone", client->pid());
        if (!deaf_) watch(client->fd(), false);
        return true;
    });
}

std::vector<Notify> Broker::takeJournal() {
    return std::exchange(journal_, {});
}

}  // namespace Unit
