#include "unit/ctl/lockfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Unit {

bool LockFile::take(const std::string& file) {
    release();
    fd_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd_ >= 0 && ::flock(fd_, LOCK_EX | LOCK_NB) == 0) return true;
    release();
    return false;
}

void LockFile::release() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

bool LockFile::isHeld(const std::string& file) {
    const int fd = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) return false;
    const bool held = ::flock(fd, LOCK_EX | LOCK_NB) != 0;
    ::close(fd);
    return held;
}

}  // namespace Unit
