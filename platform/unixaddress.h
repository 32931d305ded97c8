#pragma once

#include <sys/un.h>

#include <cerrno>
#include <cstring>

namespace Platform {

/// The address of a Unix socket; false with errno ENAMETOOLONG when the path has no room in it.
inline bool fillUnixAddress(sockaddr_un& address, const char* path) {
    address = {};
    address.sun_family = AF_UNIX;
    const std::size_t length = std::strlen(path);
    if (length >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path, length);
    return true;
}

}  // namespace Platform
