#include "fakeplatform.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/system.h"

namespace {

constexpr int logDevice = 1000;
std::vector<std::string> opened;

}  // namespace

namespace Platform {

int open(const char* path, int, mode_t) {
    if (std::strcmp(path, "/dev/kmsg") == 0) return logDevice;
    if (!FakePlatform::devices.contains(path)) {
        errno = ENOENT;
        return -1;
    }
    opened.emplace_back(path);
    return static_cast<int>(opened.size()) - 1;
}

int close(int) {
    return 0;
}

ssize_t read(int fd, void* buffer, size_t size) {
    auto& records = FakePlatform::devices[opened.at(static_cast<std::size_t>(fd))];
    if (records.empty() || size < sizeof(FakePlatform::Record)) {
        errno = EAGAIN;
        return -1;
    }
    std::memcpy(buffer, &records.front(), sizeof(FakePlatform::Record));
    records.pop_front();
    return sizeof(FakePlatform::Record);
}

ssize_t writev(int, const iovec* parts, int count) {
    ssize_t size = 0;
    for (int i = 0; i < count; ++i) {
        FakePlatform::log.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
        size += static_cast<ssize_t>(parts[i].iov_len);
    }
    return size;
}

std::int64_t steadyNanoseconds() {
    return 0;
}
int sleepNanoseconds(std::int64_t, std::int64_t*) {
    return 0;
}

}  // namespace Platform
