#include "platform/virtual/driver.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cerrno>

namespace Platform::Virtual {

namespace {

constexpr std::int64_t second = 1'000'000'000;

/// The shared lock tells the product that a hold has somebody behind it.
int takeLock(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    while (fd >= 0 && ::flock(fd, LOCK_SH) != 0 && errno == EINTR) {
    }
    return fd;
}

bool isAlive(std::uint32_t process) {
    return process != 0 && (::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

}  // namespace

Driver::~Driver() {
    releaseVsync();
    releaseClock();
    for (const auto& stream : streams_) ::close(stream.second);
}

void Driver::holdVsync() {
    if (vsyncHold_ < 0) vsyncHold_ = takeLock(instance_.file(Instance::vsyncLock));
    instance_.control().vsyncHeld = 1;
    instance_.control().announce();
}

// Without its lock the hold is an abandoned one, unless another driver has put it too.
void Driver::releaseVsync() {
    if (vsyncHold_ < 0) return;
    ::close(vsyncHold_);
    vsyncHold_ = -1;
    instance_.liftAbandonedHolds();
}

void Driver::step(unsigned count) {
    instance_.control().permits += count;
    instance_.control().announce();
}

bool Driver::awaitRest(int milliseconds) {
    ControlBlock& block = instance_.control();
    const std::int64_t end = machineTime() + milliseconds * std::int64_t{1'000'000};
    for (;;) {
        // Permits first: see ControlBlock.
        const bool taken = block.permits == 0;
        std::uint32_t resting = block.resting;
        if (taken && isAlive(resting)) return true;
        // One that was killed at rest is not waiting: the next product's rest is what counts.
        if (resting != 0 && !isAlive(resting)) block.resting.compare_exchange_strong(resting, 0);
        const std::int64_t left = end - machineTime();
        if (left <= 0) return false;
        futexWait(block.resting, resting, static_cast<int>(left / 1'000'000) + 1);
    }
}

void Driver::holdClock() {
    holdClockAt(time());
}

void Driver::holdClockAt(std::int64_t time) {
    if (clockHold_ < 0) clockHold_ = takeLock(instance_.file(Instance::clockLock));
    instance_.control().heldTime = time;
    instance_.control().clockHeld = 1;
}

void Driver::advanceClock(std::int64_t duration) {
    assert(instance_.control().clockHeld != 0);
    instance_.control().heldTime += duration;
}

void Driver::releaseClock() {
    if (clockHold_ < 0) return;
    ::close(clockHold_);
    clockHold_ = -1;
    instance_.liftAbandonedHolds();
}

std::int64_t Driver::time() const {
    return instance_.control().time();
}

bool Driver::stepFrame(int milliseconds) {
    advanceClock(second / 60);
    step();
    return awaitRest(milliseconds);
}

unsigned Driver::shownBuffer() const {
    const ControlBlock& block = instance_.control();
    return block.yoffset / std::max(1U, block.screen.yres);
}

Picture Driver::shot() const {
    const ControlBlock& block = instance_.control();
    Picture picture;
    if (block.screen.bits_per_pixel != 32) return picture;
    picture.width = block.screen.xres;
    picture.height = block.screen.yres;
    picture.pixels.resize(std::size_t{picture.width} * picture.height);
    const int fd = ::open(framebufferFile().c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return {};
    const std::size_t size = picture.pixels.size() * sizeof picture.pixels[0];
    ssize_t got = 0;
    constexpr int tries = 5;
    for (int i = 0; i < tries; ++i) {
        const std::uint32_t before = block.pans;
        got = ::pread(fd, picture.pixels.data(), size,
                      static_cast<off_t>(block.yoffset) * picture.width * static_cast<off_t>(sizeof(std::uint32_t)));
        if (block.pans == before) break;
    }
    ::close(fd);
    return got == static_cast<ssize_t>(size) ? picture : Picture{};
}

void Driver::plug(const std::string& path) {
    char buffer[Instance::pathLimit];
    const char* file = instance_.mapPath(path.c_str(), buffer);
    if (file == nullptr || (::mkfifo(file, 0600) != 0 && errno != EEXIST)) return;
    // Open for reading too: the stream then stays alive, and filled, while the product has it closed.
    const int fd = ::open(file, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) streams_.emplace_back(path, fd);
}

void Driver::unplug(const std::string& path) {
    char buffer[Instance::pathLimit];
    if (const char* file = instance_.mapPath(path.c_str(), buffer)) ::unlink(file);
    std::erase_if(streams_, [&](const auto& stream) {
        if (stream.first != path) return false;
        ::close(stream.second);
        return true;
    });
}

bool Driver::feed(const std::string& path, const void* data, std::size_t size) {
    for (const auto& stream : streams_)
        if (stream.first == path) return ::write(stream.second, data, size) == static_cast<ssize_t>(size);
    return false;
}

}  // namespace Platform::Virtual
