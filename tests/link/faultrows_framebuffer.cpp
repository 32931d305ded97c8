#include <errno.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <sys/ioctl.h>

#include "apps/gui/common/fb-linux.h"
#include "faultmatrix.h"

namespace {

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

SeamCall request(const char* name, unsigned long number, unsigned nth = 1) {
    return {Call::Ioctl, name, {.nth = nth, .request = number}};
}

}  // namespace

FaultRows framebufferRows() {
    const Faults openErrors = {EACCES, EBUSY, EINTR, EIO, ELOOP, EMFILE, ENFILE, ENODEV, ENOENT, ENOMEM, ENXIO, EPERM};
    const Faults mapErrors = {EACCES, EAGAIN, EBADF, EINTR, EINVAL, ENFILE, ENODEV, ENOMEM, EOVERFLOW, EPERM};
    const Faults deviceErrors = {EBADF, EBUSY, EFAULT, EINVAL, EIO, ENODEV, ENOMEM, ENOTTY, ETIMEDOUT};
    Faults infoErrors = deviceErrors;
    infoErrors.push_back(EINTR);
    const SeamCall getInfo = request("FBIOGET_VSCREENINFO", FBIOGET_VSCREENINFO);
    const SeamCall putInfo = request("FBIOPUT_VSCREENINFO", FBIOPUT_VSCREENINFO);
    const SeamCall getInfoAgain = request("FBIOGET_VSCREENINFO (second)", FBIOGET_VSCREENINFO, 2);
    const SeamCall getFixedInfo = request("FBIOGET_FSCREENINFO", FBIOGET_FSCREENINFO);
    const SeamCall vsync = request("FBIO_WAITFORVSYNC", FBIO_WAITFORVSYNC);
    const SeamCall pan = request("FBIOPAN_DISPLAY", FBIOPAN_DISPLAY);

    FaultTable table("apps/gui/common/fb-linux.cpp");
    table.operation("LinuxFramebuffer::open", Phase::StartUp);
    table.fatal(open, {Call::Open, {.path = path}}, openErrors, "frambuffer open: <error>");
    table.fatal(open, getInfo, infoErrors, "screen info: <error>");
    table.fatal(open, vsync, deviceErrors, "vsync: <error>");
    table.ignored(open, vsync, {EINTR});
    table.fatal(open, putInfo, infoErrors, "screen info: <error>");
    table.fatal(open, getInfoAgain, infoErrors, "screen info: <error>");
    table.fatal(open, getFixedInfo, infoErrors, "screen info: <error>");
    table.fatal(open, pan, deviceErrors, "pan: <error>");
    table.ignored(open, pan, {EINTR}, "counts as done");
    table.fatal(openReadOnly, {Call::Mmap, {.path = path}}, mapErrors, "map framebuffer: <error>");
    table.operation("LinuxFramebuffer::swap", Phase::Running);
    table.fatal(swap, pan, deviceErrors, "pan: <error>");
    table.ignored(swap, pan, {EINTR}, "counts as done");
    table.operation("LinuxFramebuffer::waitVsync", Phase::Running);
    table.fatal(waitVsync, vsync, deviceErrors, "vsync: <error>");
    table.ignored(waitVsync, vsync, {EINTR});
    table.operation("LinuxFramebuffer::displayedAddress", Phase::Running);
    table.fatal(displayedAddress, getInfo, infoErrors, "screen info: <error>");
    table.operation("LinuxFramebuffer::~LinuxFramebuffer", Phase::Running);
    table.ignored(unmap, Call::Munmap, {EINTR, EINVAL, ENOMEM});
    return table.rows();
}
