#include "tests/support/stubserver.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

#include "platform/system.h"

namespace {

constexpr const char* socketPath = "/var/volatile/message-broker.socket";
constexpr const char* readySemaphore = "/message-broker-ready";

}  // namespace

StubServer::StubServer() {
    for (const auto& area : Catalogue::areas) {
        areas_.emplace_back(area.name, area.size);
        areas_.back().create();
        areas_.back().address();
    }
    listener_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    EXPECT_EQ(Platform::bindUnix(listener_, socketPath), 0) << std::strerror(errno);
    EXPECT_EQ(Platform::listen(listener_, 4), 0);
    sem_t* ready = Platform::semOpen(readySemaphore, O_CREAT, 0666, 1);
    EXPECT_NE(ready, SEM_FAILED);
    Platform::semClose(ready);
    thread_ = std::thread([this] { serve(); });
}

StubServer::~StubServer() {
    ends_ = true;
    thread_.join();
    if (connection_ >= 0) Platform::close(connection_);
    if (listener_ >= 0) Platform::close(listener_);
    Platform::unlinkPath(socketPath);
    Platform::semUnlink(readySemaphore);
}

void StubServer::serve() {
    Notify buffer[256];
    while (!ends_) {
        if (connection_ < 0) connection_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        pollfd waiting = {connection_ < 0 ? listener_ : connection_.load(), POLLIN, 0};
        if (::poll(&waiting, 1, 20) <= 0 || connection_ < 0) continue;
        const ssize_t bytes = ::read(connection_, buffer, sizeof buffer);
        if (bytes == 0) ends_ = true;
        if (bytes <= 0) continue;
        const std::lock_guard lock(mutex_);
        records_.insert(records_.end(), buffer, buffer + bytes / static_cast<ssize_t>(sizeof(Notify)));
    }
}

std::vector<Notify> StubServer::received() {
    const std::lock_guard lock(mutex_);
    return std::exchange(records_, {});
}

void StubServer::notify(std::uint32_t id) {
    const Notify record = {id, 0, 0};
    EXPECT_EQ(Platform::write(connection_, &record, sizeof record), static_cast<ssize_t>(sizeof record));
}

void StubServer::echo(const std::vector<Notify>& records) {
    for (const auto& record : records) notify(record.id);
}

unsigned char* StubServer::place(std::string_view name) {
    const auto* value = Catalogue::findValue(name);
    EXPECT_NE(value, nullptr) << name;
    return area(static_cast<std::size_t>(value->area)) + value->offset;
}
