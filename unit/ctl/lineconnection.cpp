#include "unit/ctl/lineconnection.h"

#include <errno.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

#include "unit/ctl/problem.h"

namespace Unit {

LineConnection::~LineConnection() {
    close();
}

void LineConnection::close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    in_.clear();
}

bool LineConnection::connect(const std::string& path) {
    close();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    fd_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd_ >= 0 && ::connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    const int error = errno;
    close();
    errno = error;
    return false;
}

bool LineConnection::hungUp() const {
    pollfd entry = {fd_, POLLIN | POLLRDHUP, 0};
    return ::poll(&entry, 1, 0) > 0 && (entry.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

std::string LineConnection::ask(const std::string& line, int milliseconds) {
    if (line.find('\n') != std::string::npos) throw Problem("A request is one line; leave the line breaks out.");
    const std::string request = line + "\n";
    std::string answer;
    const bool sent = ::send(fd_, request.data(), request.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(request.size());
    if (!sent || !read(answer, milliseconds))
        throw Problem("No answer came to \"" + line.substr(0, line.find(' ')) +
                      "\". See what has happened: unitctl status, unitctl log.");
    if (answer == "ok") return "";
    if (answer.starts_with("ok ")) return answer.substr(3);
    throw Problem(answer.starts_with("error ") ? answer.substr(6) : answer);
}

bool LineConnection::read(std::string& line, int milliseconds) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;) {
        if (const auto length = in_.find('\n'); length != std::string::npos) {
            line = in_.substr(0, length);
            in_.erase(0, length + 1);
            return true;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        if (milliseconds >= 0 && left <= 0) return false;
        pollfd entry = {fd_, POLLIN, 0};
        const int ready = ::poll(&entry, 1, milliseconds < 0 ? -1 : static_cast<int>(left));
        if (ready < 0 && errno == EINTR) continue;
        char block[4096];
        const ssize_t got = ready > 0 ? ::read(fd_, block, sizeof block) : 0;
        if (ready > 0 && got <= 0) return false;
        in_.append(block, static_cast<std::size_t>(got));
    }
}

}  // namespace Unit
