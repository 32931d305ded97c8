#include <errno.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <sys/ioctl.h>

#include "apps/gui/common/fb-linux.h"
#include "faultmatrix.h"

namespace {

constexpr const char* file = "apps/gui/common/fb-linux.cpp";
constexpr const char* path = "/dev/fb0";

void open(const Rig& rig) {
    LinuxFramebuffer framebuffer(path, 2);
    rig.arm();
    framebuffer.open(LinuxFramebuffer::Contents::Clear);
    EXPECT_EQ(framebuffer.width(), 240);
}

void openReadOnly(const Rig& rig) {
    LinuxFramebuffer framebuffer(path);
    rig.arm();
    framebuffer.open(LinuxFramebuffer::Contents::Keep);
}

struct Opened {
    LinuxFramebuffer framebuffer{path, 2};
    Opened() { framebuffer.open(LinuxFramebuffer::Contents::Clear); }
};

void swap(const Rig& rig) {
    Opened opened;
    const void* const before = opened.framebuffer.currentAddress();
    rig.arm();
    opened.framebuffer.swap();
    EXPECT_EQ(opened.framebuffer.previousAddress(), before);
}

void waitVsync(const Rig& rig) {
    Opened opened;
    rig.arm();
    opened.framebuffer.waitVsync();
}

void displayedAddress(const Rig& rig) {
    Opened opened;
    rig.arm();
    opened.framebuffer.displayedAddress();
}

void unmap(const Rig& rig) {
    const Opened opened;
    rig.arm();
}

}  // namespace

FaultRows framebufferRows() {
    const std::vector<int> device = {EBADF, EBUSY, EFAULT, EINVAL, EIO, ENODEV, ENOMEM, ENOTTY, ETIMEDOUT};
    const auto deviceErrors = errors(device);
    auto withInterruption = device;
    withInterruption.push_back(EINTR);
    const auto allErrors = errors(withInterruption);
    return {
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Open,
         .where = {.path = path},
         .faults = errors({EACCES, EBUSY, EINTR, EIO, ELOOP, EMFILE, ENFILE, ENODEV, ENOENT, ENOMEM, ENXIO, EPERM}),
         .text = "frambuffer open: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOGET_VSCREENINFO",
         .where = {.request = FBIOGET_VSCREENINFO},
         .faults = allErrors,
         .text = "screen info: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIO_WAITFORVSYNC",
         .where = {.request = FBIO_WAITFORVSYNC},
         .faults = deviceErrors,
         .text = "vsync: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIO_WAITFORVSYNC",
         .where = {.request = FBIO_WAITFORVSYNC},
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOPUT_VSCREENINFO",
         .where = {.request = FBIOPUT_VSCREENINFO},
         .faults = allErrors,
         .text = "screen info: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOGET_VSCREENINFO (second)",
         .where = {.nth = 2, .request = FBIOGET_VSCREENINFO},
         .faults = allErrors,
         .text = "screen info: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOGET_FSCREENINFO",
         .where = {.request = FBIOGET_FSCREENINFO},
         .faults = allErrors,
         .text = "screen info: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOPAN_DISPLAY",
         .where = {.request = FBIOPAN_DISPLAY},
         .faults = deviceErrors,
         .text = "pan: <error>",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Ioctl,
         .detail = "FBIOPAN_DISPLAY",
         .where = {.request = FBIOPAN_DISPLAY},
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .text = "counts as done",
         .run = open},
        {.file = file,
         .operation = "LinuxFramebuffer::open",
         .phase = Phase::StartUp,
         .call = Call::Mmap,
         .where = {.path = path},
         .faults = errors({EACCES, EAGAIN, EBADF, EINTR, EINVAL, ENFILE, ENODEV, ENOMEM, EOVERFLOW, EPERM}),
         .text = "map framebuffer: <error>",
         .run = openReadOnly},
        {.file = file,
         .operation = "LinuxFramebuffer::swap",
         .phase = Phase::Running,
         .call = Call::Ioctl,
         .detail = "FBIOPAN_DISPLAY",
         .where = {.request = FBIOPAN_DISPLAY},
         .faults = deviceErrors,
         .text = "pan: <error>",
         .run = swap},
        {.file = file,
         .operation = "LinuxFramebuffer::swap",
         .phase = Phase::Running,
         .call = Call::Ioctl,
         .detail = "FBIOPAN_DISPLAY",
         .where = {.request = FBIOPAN_DISPLAY},
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .text = "counts as done",
         .run = swap},
        {.file = file,
         .operation = "LinuxFramebuffer::waitVsync",
         .phase = Phase::Running,
         .call = Call::Ioctl,
         .detail = "FBIO_WAITFORVSYNC",
         .where = {.request = FBIO_WAITFORVSYNC},
         .faults = deviceErrors,
         .text = "vsync: <error>",
         .run = waitVsync},
        {.file = file,
         .operation = "LinuxFramebuffer::waitVsync",
         .phase = Phase::Running,
         .call = Call::Ioctl,
         .detail = "FBIO_WAITFORVSYNC",
         .where = {.request = FBIO_WAITFORVSYNC},
         .faults = errors({EINTR}),
         .outcome = Outcome::Ignored,
         .run = waitVsync},
        {.file = file,
         .operation = "LinuxFramebuffer::displayedAddress",
         .phase = Phase::Running,
         .call = Call::Ioctl,
         .detail = "FBIOGET_VSCREENINFO",
         .where = {.request = FBIOGET_VSCREENINFO},
         .faults = allErrors,
         .text = "screen info: <error>",
         .run = displayedAddress},
        {.file = file,
         .operation = "LinuxFramebuffer::~LinuxFramebuffer",
         .phase = Phase::Running,
         .call = Call::Munmap,
         .faults = errors({EINTR, EINVAL, ENOMEM}),
         .outcome = Outcome::Ignored,
         .run = unmap},
    };
}
