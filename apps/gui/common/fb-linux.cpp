#include "apps/gui/common/fb-linux.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

void* const unmapped = MAP_FAILED;

}  // namespace

LinuxFramebuffer::LinuxFramebuffer(std::string path, int bufferCount)
    : path_(std::move(path)), bufferCount_(bufferCount), readOnly_(false), mapping_(unmapped) {}

LinuxFramebuffer::LinuxFramebuffer(std::string path)
    : path_(std::move(path)), bufferCount_(1), readOnly_(true), mapping_(unmapped) {}

LinuxFramebuffer::~LinuxFramebuffer() {
    if (mapping_ != unmapped) Platform::munmap(mapping_, fixedInfo_.smem_len);
    // The descriptor stays open until the process ends: closing it would let the console take the display.
}

void LinuxFramebuffer::open(Contents contents) {
    fd_ = Platform::open(path_.c_str(), O_RDWR | O_CLOEXEC);
    if (fd_ < 0) TERN_ERRNO_FATAL("frambuffer open");
    readVariableInfo();
    if (readOnly_)
        bufferCount_ = variableInfo_.yres != 0 ? static_cast<int>(variableInfo_.yres_virtual / variableInfo_.yres) : 0;
    else
        requestBuffers();
    if (Platform::ioctl(fd_, FBIOGET_FSCREENINFO, &fixedInfo_) != 0) TERN_ERRNO_FATAL("screen info");
    if (!readOnly_) {
        variableInfo_.yoffset = 0;
        pan();
    }
    logProperties();
    map();
    if (contents == Contents::Clear && !readOnly_) clear();
}

void LinuxFramebuffer::readVariableInfo() {
    if (Platform::ioctl(fd_, FBIOGET_VSCREENINFO, &variableInfo_) != 0) TERN_ERRNO_FATAL("screen info");
}

void LinuxFramebuffer::requestBuffers() {
    waitVsync();
    variableInfo_.yres_virtual = static_cast<std::uint32_t>(bufferCount_) * variableInfo_.yres;
    if (Platform::ioctl(fd_, FBIOPUT_VSCREENINFO, &variableInfo_) != 0) TERN_ERRNO_FATAL("screen info");
    readVariableInfo();
}

void LinuxFramebuffer::logProperties() const {
    const auto& v = variableInfo_;
    const auto& f = fixedInfo_;
    TERN_LOG(Log::LogLight, "Framebuffer is %ix%ix%i, virtual is %ix%i", width(), height(), bitsPerPixel(),
             static_cast<int>(v.xres_virtual), static_cast<int>(v.yres_virtual));
    TERN_LOG(Log::LogLight, "  Pixel Clock: %lukHz, Acceleration: %i, Capabilities: %08x",
             v.pixclock != 0 ? 1'000'000'000UL / v.pixclock : 0UL, static_cast<int>(f.accel),
             static_cast<unsigned>(f.capabilities));
    TERN_LOG(Log::LogLight, "  PanX: %i, PanY: %i, WrapY: %i", f.xpanstep, f.ypanstep, f.ywrapstep);
    TERN_LOG(Log::LogLight, "  Line: %i, MMIO start: 0x%08lx, len: 0x%08x, SMEM start: 0x%08lx, len: 0x%08x",
             static_cast<int>(f.line_length), f.mmio_start, f.mmio_len, f.smem_start, f.smem_len);
}

void LinuxFramebuffer::map() {
    mapping_ = Platform::mmap(nullptr, fixedInfo_.smem_len, PROT_READ | PROT_WRITE, MAP_SHARED, fd_, 0);
    if (mapping_ == unmapped) TERN_ERRNO_FATAL("map framebuffer");
    if (fixedInfo_.smem_len < bufferSize() * static_cast<std::size_t>(bufferCount_))
        TERN_FATAL("map framebuffer: %i buffers of %zu bytes do not fit the %u bytes of the device", bufferCount_,
                   bufferSize(), fixedInfo_.smem_len);
}

std::size_t LinuxFramebuffer::bufferSize() const {
    return std::size_t{variableInfo_.xres} * variableInfo_.yres * ((variableInfo_.bits_per_pixel + 7) / 8);
}

void* LinuxFramebuffer::currentAddress() const {
    return bufferAt(static_cast<std::size_t>(currentBuffer_));
}

void* LinuxFramebuffer::previousAddress() const {
    return bufferAt(static_cast<std::size_t>(currentBuffer_ > 0 ? currentBuffer_ - 1 : bufferCount_ - 1));
}

void* LinuxFramebuffer::displayedAddress() {
    readVariableInfo();
    const std::uint32_t height = variableInfo_.yres;
    return bufferAt(height != 0 ? variableInfo_.yoffset / height : 0);
}

void LinuxFramebuffer::clear() {
    if (readOnly_) TERN_FATAL("Not allowed in read only mode");
    std::memset(currentAddress(), 0, bufferSize());
}

void LinuxFramebuffer::swap() {
    if (readOnly_) TERN_FATAL("Not allowed in read only mode");
    variableInfo_.yoffset = variableInfo_.yres * static_cast<std::uint32_t>(currentBuffer_);
    pan();
    if (++currentBuffer_ == bufferCount_) currentBuffer_ = 0;
}

void LinuxFramebuffer::pan() {
    // An interrupted wait for the blank has panned all the same.
    if (Platform::ioctl(fd_, FBIOPAN_DISPLAY, &variableInfo_) != 0 && errno != EINTR) TERN_ERRNO_FATAL("pan");
}

void LinuxFramebuffer::waitVsync() {
    std::uint32_t display = 0;
    if (Platform::ioctl(fd_, FBIO_WAITFORVSYNC, &display) != 0 && errno != EINTR) TERN_ERRNO_FATAL("vsync");
}
