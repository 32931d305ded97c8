#include "unit/server/controlsocket.h"

#include <errno.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace Unit {

namespace {

constexpr int backlog = 8;
constexpr std::size_t lineLimit = 64 << 10;
constexpr std::size_t outLimit = 8 << 20;

}  // namespace

ControlSocket::~ControlSocket() {
    close();
}

void ControlSocket::open() {
    Platform::unlinkPath(socketPath);
    listening_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listening_ < 0) TERN_ERRNO_FATAL("socket");
    if (Platform::bindUnix(listening_, socketPath) < 0) TERN_ERRNO_FATAL(socketPath);
    if (Platform::listen(listening_, backlog) < 0) TERN_ERRNO_FATAL("listen");
    poll_.add(listening_, this, EPOLLIN);
}

void ControlSocket::close() {
    if (listening_ < 0) return;
    for (const auto& client : clients_) client->ended = true;
    reap();
    poll_.remove(listening_);
    Platform::close(listening_);
    listening_ = -1;
    Platform::unlinkPath(socketPath);
}

void ControlSocket::onPollEvent(int) {
    acceptAll();
    readAll();
}

void ControlSocket::acceptAll() {
    for (;;) {
        const int fd = Platform::accept(listening_, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) return;
        clients_.push_back(std::make_unique<Client>(Client{.fd = fd, .in = {}, .out = {}}));
        poll_.add(fd, this, EPOLLIN);
    }
}

void ControlSocket::readAll() {
    char block[4096];
    for (const auto& client : clients_) {
        while (!client->ended) {
            const ssize_t got = Platform::read(client->fd, block, sizeof block);
            if (got < 0 && errno == EINTR) continue;
            if (got < 0 && errno == EAGAIN) break;
            if (got <= 0) client->ended = true;
            if (got > 0) client->in.append(block, static_cast<std::size_t>(got));
            answerLines(*client);
        }
    }
}

void ControlSocket::answerLines(Client& client) {
    std::size_t start = 0;
    for (std::size_t end; (end = client.in.find('\n', start)) != std::string::npos; start = end + 1) {
        std::string_view line(client.in.data() + start, end - start);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty()) continue;
        if (line == "watch") {
            client.watches = true;
            client.out += "ok\n";
        } else {
            client.out += answer_(line) + "\n";
        }
    }
    client.in.erase(0, start);
    if (client.in.size() > lineLimit) client.ended = true;
}

bool ControlSocket::anyWatcher() const {
    for (const auto& client : clients_)
        if (client->watches) return true;
    return false;
}

void ControlSocket::tell(std::string_view line) {
    for (const auto& client : clients_)
        if (client->watches) client->out.append(line) += '\n';
}

void ControlSocket::flush() {
    for (const auto& client : clients_) {
        while (!client->ended && !client->out.empty()) {
            const ssize_t written = Platform::write(client->fd, client->out.data(), client->out.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0 && errno == EAGAIN && client->out.size() < outLimit) break;
            if (written < 0) client->ended = true;
            if (written > 0) client->out.erase(0, static_cast<std::size_t>(written));
        }
    }
}

void ControlSocket::reap() {
    std::erase_if(clients_, [this](const auto& client) {
        if (!client->ended) return false;
        poll_.remove(client->fd);
        Platform::close(client->fd);
        return true;
    });
}

}  // namespace Unit
