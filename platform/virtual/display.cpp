#include "platform/virtual/display.h"

#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "platform/virtual/tape/tape.h"

namespace Platform::Virtual {

namespace {

constexpr unsigned long getVariableInfo = 0x4600;
constexpr unsigned long putVariableInfo = 0x4601;
constexpr unsigned long getFixedInfo = 0x4602;
constexpr unsigned long panDisplay = 0x4606;
constexpr unsigned long waitForVsync = 0x40044620;
static_assert(getVariableInfo == FBIOGET_VSCREENINFO && putVariableInfo == FBIOPUT_VSCREENINFO &&
              getFixedInfo == FBIOGET_FSCREENINFO && panDisplay == FBIOPAN_DISPLAY &&
              waitForVsync == FBIO_WAITFORVSYNC);

constexpr std::uint32_t buffers = 2;
constexpr int abandonedCheckMs = 500;

int fail(int error) {
    errno = error;
    return -1;
}

std::uint32_t bytesPerPixel(const ControlBlock& block) {
    return (block.screen.bits_per_pixel + 7) / 8;
}

void getVariable(const ControlBlock& block, fb_var_screeninfo& info) {
    info = block.screen;
    info.yoffset = block.yoffset;
}

// Only the rows may change: the panel has one mode. Like a kernel driver it answers with what it has taken.
int putVariable(ControlBlock& block, fb_var_screeninfo& info) {
    const fb_var_screeninfo& now = block.screen;
    if (info.xres != now.xres || info.yres != now.yres || info.bits_per_pixel != now.bits_per_pixel)
        return fail(EINVAL);
    if (info.xres_virtual > now.xres || info.yres_virtual < now.yres || info.yres_virtual > now.yres * buffers)
        return fail(EINVAL);
    if (info.xoffset != 0 || info.yoffset > info.yres_virtual - info.yres) return fail(EINVAL);
    block.screen.yres_virtual = info.yres_virtual;
    block.yoffset = info.yoffset;
    getVariable(block, info);
    return 0;
}

void getFixed(const ControlBlock& block, fb_fix_screeninfo& info) {
    info = {};
    std::strncpy(info.id, "tern-virtual", sizeof info.id - 1);
    info.type = FB_TYPE_PACKED_PIXELS;
    info.visual = FB_VISUAL_TRUECOLOR;
    info.ypanstep = 1;
    info.line_length = block.screen.xres * bytesPerPixel(block);
    info.smem_len = info.line_length * block.screen.yres * buffers;
    info.accel = FB_ACCEL_NONE;
}

// The offset changes at once and the wait follows: a driver that finds the product at rest sees its newest picture,
// and a pan that a signal interrupts has happened all the same.
int pan(Instance& instance, const fb_var_screeninfo& info) {
    ControlBlock& block = instance.control();
    if (info.xoffset != 0 || info.yoffset > block.screen.yres_virtual - block.screen.yres) return fail(EINVAL);
    block.yoffset = info.yoffset;
    ++block.pans;
    if (Recorder* to = recorder()) to->shown();
    if (Replayer* tape = replayer()) tape->shown();
    return waitForBlank(instance);
}

int sleepUntilTick(Instance& instance) {
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t tick = now.tv_nsec * std::int64_t{60} / 1'000'000'000 + 1;
    const std::int64_t at = (tick * 1'000'000'000 + 59) / 60;
    const timespec next = {now.tv_sec + static_cast<time_t>(at / 1'000'000'000), static_cast<long>(at % 1'000'000'000)};
    const int error = ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
    if (error != 0) return fail(error);
    // A held clock beside a running sync: nothing sleeps on the driver here, so its death is looked for once a second.
    if (tick == 60 && instance.control().clockHeld != 0) instance.liftAbandonedHolds();
    return 0;
}

void setResting(ControlBlock& block, std::uint32_t resting) {
    if (block.resting.exchange(resting) != resting) futexWake(block.resting);
}

bool takePermit(ControlBlock& block) {
    std::uint32_t permits = block.permits;
    while (permits != 0)
        if (block.permits.compare_exchange_weak(permits, permits - 1)) return true;
    return false;
}

int waitForTick(Instance& instance) {
    ControlBlock& block = instance.control();
    for (;;) {
        const std::uint32_t sequence = block.sequence;
        if (block.vsyncHeld == 0) {
            setResting(block, 0);
            return replayer() != nullptr ? 0 : sleepUntilTick(instance);
        }
        if (block.permits != 0) {
            setResting(block, 0);
            if (takePermit(block)) return 0;
        }
        setResting(block, static_cast<std::uint32_t>(::getpid()));
        if (futexWait(block.sequence, sequence, abandonedCheckMs) == 0 || errno == EAGAIN) continue;
        if (errno == ETIMEDOUT) {
            instance.liftAbandonedHolds();
            continue;
        }
        const int error = errno;
        setResting(block, 0);
        return fail(error);
    }
}

}  // namespace

int waitForBlank(Instance& instance) {
    Recorder* const to = recorder();
    Replayer* const tape = replayer();
    if (to != nullptr) to->endPass();
    if (tape != nullptr) tape->endPass();
    const int result = waitForTick(instance);
    const int error = errno;
    if (to != nullptr) to->beginPass();
    if (tape != nullptr) tape->beginPass();
    errno = error;
    return result;
}

int displayIoctl(Instance& instance, unsigned long request, void* argument) {
    ControlBlock& block = instance.control();
    switch (request) {
        case getVariableInfo: getVariable(block, *static_cast<fb_var_screeninfo*>(argument)); return 0;
        case putVariableInfo: return putVariable(block, *static_cast<fb_var_screeninfo*>(argument));
        case getFixedInfo: getFixed(block, *static_cast<fb_fix_screeninfo*>(argument)); return 0;
        case panDisplay: return pan(instance, *static_cast<const fb_var_screeninfo*>(argument));
        case waitForVsync: ++block.vsyncWaits; return waitForBlank(instance);
        default: return fail(ENOTTY);
    }
}

}  // namespace Platform::Virtual
