#include "server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

void closeFd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

}  // namespace

Server::Server()
    : gate_(Platform::semOpen(gateName, O_CREAT, 0666, 1)),
      listener_(Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    EXPECT_NE(gate_, SEM_FAILED);
    EXPECT_EQ(Platform::bindUnix(listener_, socketPath), 0);
    EXPECT_EQ(Platform::listen(listener_, 4), 0);
}

Server::~Server() {
    die();
    Platform::unlinkPath(socketPath);
    Platform::semClose(gate_);
    Platform::semUnlink(gateName);
}

void Server::accept() {
    closeFd(client_);
    client_ = Platform::accept(listener_, SOCK_CLOEXEC);
    ASSERT_GE(client_, 0);
}

void Server::disconnect() {
    closeFd(client_);
}

void Server::endSending() {
    ::shutdown(client_, SHUT_WR);
}

void Server::die() {
    closeFd(client_);
    closeFd(listener_);
}

void Server::removeGate() {
    Platform::semUnlink(gateName);
}

int Server::gateCount() const {
    int count = -1;
    ::sem_getvalue(gate_, &count);
    return count;
}

void Server::send(const std::vector<Notify>& notices) {
    sendBytes(notices.data(), notices.size() * sizeof(Notify));
}

bool Server::trySend(std::span<const Notify> notices) {
    return ::send(client_, notices.data(), notices.size_bytes(), MSG_NOSIGNAL) >= 0;
}

void Server::sendBytes(const void* data, std::size_t size) {
    ASSERT_EQ(::send(client_, data, size, MSG_NOSIGNAL), static_cast<ssize_t>(size));
}

std::vector<std::uint32_t> Server::received() {
    std::vector<std::uint32_t> words(4096);
    const ssize_t size = ::recv(client_, words.data(), words.size() * sizeof words[0], MSG_DONTWAIT);
    words.resize(size > 0 ? static_cast<std::size_t>(size) / sizeof words[0] : 0);
    return words;
}
