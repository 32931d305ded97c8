#include "apps/gui/main/openfile.h"

#include <fcntl.h>

#include "apps/common/log/log.h"
#include "platform/system.h"

OpenFile::OpenFile(const std::string& path, int flags, mode_t mode)
    : fd_(Platform::open(path.c_str(), flags | O_CLOEXEC, mode)) {
    if (fd_ < 0) TERN_ERRNO_FATAL(path.c_str());
}

OpenFile::~OpenFile() {
    Platform::close(fd_);
}
