#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/log/log.h"
#include "faultmatrix.h"

namespace {

constexpr const char* device = "/dev/kmsg";

void writeLine() {
    Log::log(nullptr, Log::Warn, "f", 1, "text");
}

/// A line of the log, and whether its loss was told.
bool lineIsTold() {
    testing::internal::CaptureStderr();
    writeLine();
    return testing::internal::GetCapturedStderr().starts_with("FATAL: Logging: Write failed: ");
}

void firstLineLost(const Rig& rig) {
    rig.arm();
    EXPECT_TRUE(lineIsTold());
}

void laterLineLost(const Rig& rig) {
    writeLine();
    rig.arm();
    EXPECT_TRUE(lineIsTold());
}

void firstLineKept(const Rig& rig) {
    rig.arm();
    EXPECT_FALSE(lineIsTold());
}

void laterLineKept(const Rig& rig) {
    writeLine();
    rig.arm();
    EXPECT_FALSE(lineIsTold());
}

void changeDevice(const Rig& rig) {
    writeLine();
    rig.arm();
    Log::setDevice(nullptr);
}

}  // namespace

FaultRows logRows() {
    const SeamCall open = {Call::Open, {.path = device}};
    const SeamCall write = {Call::Writev, {.path = device}};
    const Faults openErrors = {EACCES, EBUSY,  EIO,    ELOOP,   EMFILE, ENFILE,
                               ENODEV, ENOENT, ENOMEM, ENOTDIR, ENXIO,  EPERM};
    const Faults writeErrors = {EAGAIN, EBADF, EFAULT, EINVAL, EIO, ENOSPC, EPERM, EPIPE};
    const char* const lost = "the line is lost and told on stderr";

    FaultTable table("apps/common/log/log.cpp");
    table.operation("log", Phase::StartUp);
    table.ignored(firstLineLost, open, openErrors, "each line is lost and told on stderr");
    table.retried(firstLineKept, open, {EINTR});
    table.ignored(firstLineLost, write, writeErrors, lost);
    table.retried(firstLineKept, write, {EINTR});
    table.operation("log", Phase::Running);
    table.ignored(laterLineLost, write, writeErrors, lost);
    table.retried(laterLineKept, write, {EINTR});
    table.ignored(laterLineKept, write, shorts(0, 40), "the rest of the line is lost");
    table.operation("setDevice", Phase::Running);
    table.ignored(changeDevice, {Call::Close, {.path = device}}, {EBADF, EINTR, EIO});
    return table.rows();
}
