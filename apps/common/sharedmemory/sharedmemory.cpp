#include "apps/common/sharedmemory/sharedmemory.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>

#include <cassert>
#include <cstring>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

constexpr mode_t areaMode = 0666;

}  // namespace

SharedMemory::SharedMemory(const std::string& name, std::uint32_t size) : name_("/" + name), size_(size) {}

SharedMemory::~SharedMemory() {
    close();
}

void SharedMemory::create() {
    openDescriptor(O_RDWR | O_CREAT);
    if (Platform::ftruncate(fd_, static_cast<off_t>(mappedSize())) < 0) TERN_ERRNO_FATAL(name_.c_str());
    created_ = true;
}

void SharedMemory::open() {
    openDescriptor(O_RDWR);
}

void* SharedMemory::address() {
    if (fd_ < 0) TERN_FATAL("Call open or create before asking for the address");
    if (data_ == nullptr) map();
    return data_;
}

void SharedMemory::close() {
    unmap();
    if (fd_ >= 0) Platform::close(fd_);
    fd_ = -1;
    if (created_ && Platform::shmUnlink(name_.c_str()) < 0) {
        TERN_LOG(Log::Error, "%s: %s", name_.c_str(), std::strerror(errno));
    }
    created_ = false;
}

void SharedMemory::openDescriptor(int flags) {
    assert(fd_ < 0);
    fd_ = Platform::shmOpen(name_.c_str(), flags, areaMode);
    if (fd_ < 0) TERN_ERRNO_FATAL(name_.c_str());
}

// Touching a mapped page beyond the end of the object kills the process with SIGBUS, so the size is asked first. The
// header of a short object is read, not mapped: an area of another build deserves the message about its size.
void SharedMemory::checkObjectSize() const {
    const off_t found = Platform::fileSize(fd_);
    if (found < 0) TERN_ERRNO_FATAL(name_.c_str());
    if (found >= static_cast<off_t>(mappedSize())) return;
    std::uint32_t header = 0;
    if (Platform::read(fd_, &header, sizeof header) == static_cast<ssize_t>(sizeof header) && header != 0) {
        checkHeader(header);
    }
    TERN_FATAL("Memory %s is cut short: it needs %zu bytes, the object has %lld. Start the server first.",
               name_.c_str(), mappedSize(), static_cast<long long>(found));
}

void SharedMemory::checkHeader(std::uint32_t found) const {
    if (found != size_) {
        TERN_FATAL("Memory size missmatch for %s, requested %u, is %u.", name_.c_str(), size_, found);
    }
}

void SharedMemory::map() {
    checkObjectSize();
    mapping_ = Platform::mmap(nullptr, mappedSize(), PROT_READ | PROT_WRITE, MAP_SHARED, fd_, 0);
    if (mapping_ == MAP_FAILED) mapping_ = nullptr;
    if (mapping_ == nullptr) TERN_ERRNO_FATAL(name_.c_str());
    auto* header = static_cast<std::uint32_t*>(mapping_);
    if (created_) {
        *header = size_;
    } else if (const std::uint32_t found = *header; found != size_) {
        unmap();
        checkHeader(found);
    }
    data_ = header + 1;
}

void SharedMemory::unmap() {
    if (mapping_ != nullptr) Platform::munmap(mapping_, mappedSize());
    mapping_ = nullptr;
    data_ = nullptr;
}
