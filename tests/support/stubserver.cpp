#include "tests/support/stubserver.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "platform/system.h"

namespace {

constexpr const char* socketPath = "/var/volatile/message-broker.socket";
constexpr const char* readySemaphore = "/message-broker-ready";

void require(bool good, const char* what) {
    if (!good) throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

StubServer::StubServer() {
    for (const auto& area : Catalogue::areas) {
        areas_.emplace_back(area.name, area.size);
        areas_.back().create();
        areas_.back().address();
    }
    listener_ = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    require(Platform::bindUnix(listener_, socketPath) == 0, socketPath);
    require(Platform::listen(listener_, 4) == 0, "listen");
    sem_t* ready = Platform::semOpen(readySemaphore, O_CREAT, 0666, 1);
    require(ready != SEM_FAILED, readySemaphore);
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
    while (!ends_) {
        if (connection_ < 0) connection_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        pollfd waiting = {connection_ < 0 ? listener_ : connection_.load(), POLLIN, 0};
        if (::poll(&waiting, 1, 20) <= 0 || connection_ < 0) continue;
        const std::lock_guard lock(mutex_);
        readOnce();
    }
}

bool StubServer::readOnce() {
    Notify buffer[256];
    const ssize_t bytes = ::read(connection_, buffer, sizeof buffer);
    if (bytes == 0) ends_ = true;
    if (bytes <= 0) return false;
    records_.insert(records_.end(), buffer, buffer + bytes / static_cast<ssize_t>(sizeof(Notify)));
    return true;
}

std::vector<Notify> StubServer::received() {
    const std::lock_guard lock(mutex_);
    while (connection_ >= 0 && readOnce()) {
    }
    return std::exchange(records_, {});
}

void StubServer::send(const std::vector<Notify>& records) {
    const std::size_t size = records.size() * sizeof(Notify);
    require(Platform::write(connection_, records.data(), size) == static_cast<ssize_t>(size),
            "a notice to the program");
}

void StubServer::notify(std::uint32_t id) {
    send({{id, 0, 0}});
}

void StubServer::notify(std::span<const std::uint32_t> ids) {
    std::vector<Notify> records;
    for (const std::uint32_t id : ids) records.push_back({id, 0, 0});
    if (!records.empty()) send(records);
}

void StubServer::echo(const std::vector<Notify>& records) {
    for (const auto& record : records) notify(record.id);
}

unsigned char* StubServer::place(std::string_view name) {
    const auto* value = Catalogue::findValue(name);
    if (value == nullptr) throw std::invalid_argument("no value " + std::string(name));
    return area(static_cast<std::size_t>(value->area)) + value->offset;
}
