#include "unit/panel/displayview.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

namespace Unit {

namespace {

constexpr std::size_t buffers = 2;
constexpr unsigned depth = 32;
constexpr int tries = 3;

}  // namespace

DisplayView::~DisplayView() {
    if (buffers_ != nullptr) ::munmap(const_cast<std::byte*>(buffers_), size_);
}

bool DisplayView::mapBuffers(std::size_t size) {
    if (size_ == size) return true;
    if (buffers_ != nullptr) ::munmap(const_cast<std::byte*>(buffers_), size_);
    buffers_ = nullptr;
    size_ = 0;
    const int fd = ::open(driver_.framebufferFile().c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    void* start = MAP_FAILED;
    // Beyond the file's end a mapping would kill its reader.
    if (fd >= 0 && ::fstat(fd, &status) == 0 && static_cast<std::size_t>(status.st_size) >= size)
        start = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd, 0);
    if (fd >= 0) ::close(fd);
    if (start == MAP_FAILED) return false;
    buffers_ = static_cast<const std::byte*>(start);
    size_ = size;
    return true;
}

bool DisplayView::refresh() {
    const auto mode = driver_.mode();
    if (mode.bits_per_pixel != depth || (frame_ != 0 && driver_.pans() == pansSeen_)) return false;
    const std::size_t pixels = std::size_t{mode.xres} * mode.yres;
    const std::size_t bytes = pixels * sizeof(std::uint32_t);
    if (!mapBuffers(bytes * buffers)) return false;
    picture_.width = mode.xres;
    picture_.height = mode.yres;
    picture_.pixels.resize(pixels);
    for (int i = 0; i < tries; ++i) {
        const std::uint32_t before = driver_.pans();
        const unsigned buffer = driver_.shownBuffer();
        if (buffer >= buffers) return false;
        std::memcpy(picture_.pixels.data(), buffers_ + buffer * bytes, bytes);
        if (driver_.pans() != before) continue;
        pansSeen_ = before;
        ++frame_;
        return true;
    }
    return false;
}

}  // namespace Unit
