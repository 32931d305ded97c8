#include "server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "model/catalogue/constants.h"
#include "platform/system.h"

namespace {

constexpr const char* gateName = "/message-broker-ready";
constexpr const char* socketPath = "/var/volatile/message-broker.socket";

}  // namespace

Server::Server() {
    for (const Catalogue::Area& area : Catalogue::areas) {
        areas_.emplace_back(area.name, area.size).create();
        areas_.back().address();
    }
    gate_ = Platform::semOpen(gateName, O_CREAT, 0666, 1);
    listener_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(Platform::bindUnix(listener_, socketPath), 0);
    EXPECT_EQ(Platform::listen(listener_, 1), 0);
    reader_ = std::thread([this] {
        client_ = Platform::accept(listener_, SOCK_CLOEXEC);
        subscriptions_.resize(2 * Catalogue::subscriptions.size());
        const std::size_t size = subscriptions_.size() * sizeof(Notify);
        EXPECT_EQ(::recv(client_, subscriptions_.data(), size, MSG_WAITALL), static_cast<ssize_t>(size));
    });
}

Server::~Server() {
    ::shutdown(listener_, SHUT_RDWR);
    takeSubscriptions();
    if (client_ >= 0) ::close(client_);
    ::close(listener_);
    Platform::unlinkPath(socketPath);
    Platform::semClose(gate_);
    Platform::semUnlink(gateName);
}

std::vector<Notify> Server::takeSubscriptions() {
    if (reader_.joinable()) reader_.join();
    return subscriptions_;
}

void Server::send(std::uint32_t id) {
    const Notify notice{id};
    ASSERT_EQ(::send(client_, &notice, sizeof notice, MSG_NOSIGNAL), static_cast<ssize_t>(sizeof notice));
}

std::vector<Notify> Server::received() {
    std::vector<Notify> notices(8192);
    const ssize_t size = ::recv(client_, notices.data(), notices.size() * sizeof(Notify), MSG_DONTWAIT);
    notices.resize(size > 0 ? static_cast<std::size_t>(size) / sizeof(Notify) : 0);
    return notices;
}

std::vector<std::uint32_t> Server::receivedIds() {
    std::vector<std::uint32_t> ids;
    for (const Notify& notice : received()) ids.push_back(notice.id);
    return ids;
}
