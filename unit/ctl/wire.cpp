#include "unit/ctl/wire.h"

#include <errno.h>
#include <fcntl.h>
#include <semaphore.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <cstring>

#include "apps/common/event/notify.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

constexpr time_t gatePatience = 3;  // seconds

[[noreturn]] void fail(const std::string& what) {
    throw Problem(what + ": " + std::strerror(errno) + ". Does the unit's server run?");
}

/// The server's gate, held for the time of connecting.
class Gate {
  public:
    explicit Gate(const char* name) : semaphore_(::sem_open(name, 0)) {
        if (semaphore_ == SEM_FAILED) fail("The server's gate cannot be opened");
        timespec end;
        ::clock_gettime(CLOCK_REALTIME, &end);
        end.tv_sec += gatePatience;
        int result = 0;
        while ((result = ::sem_timedwait(semaphore_, &end)) != 0 && errno == EINTR) {
        }
        if (result == 0) return;
        ::sem_close(semaphore_);
        fail("The server lets nobody in");
    }
    ~Gate() {
        ::sem_post(semaphore_);
        ::sem_close(semaphore_);
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

  private:
    sem_t* semaphore_;
};

}  // namespace

void sendNotice(const Platform::Virtual::Instance& instance, std::uint32_t id) {
    char name[Platform::Virtual::Instance::nameLimit];
    const char* gateName = instance.mapName("/message-broker-ready", name);
    const std::string path = instance.file("var/volatile/message-broker.socket");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (gateName == nullptr || path.size() >= sizeof address.sun_path) fail(path);
    std::memcpy(address.sun_path, path.data(), path.size());

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int connected = -1;
    {
        const Gate gate(gateName);
        connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
    const Notify notice = {id, 0, 0};
    const bool sent = connected == 0 && ::send(fd, &notice, sizeof notice, MSG_NOSIGNAL) == sizeof notice;
    const int error = errno;
    ::close(fd);
    errno = error;
    if (!sent) fail("The notice cannot be sent to " + path);
}

}  // namespace Unit
