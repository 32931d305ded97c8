#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/log/log.h"
#include "faultmatrix.h"

namespace {

constexpr const char* file = "apps/common/log/log.cpp";
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

constexpr const char* lost = "the line is lost and told on stderr";

}  // namespace

FaultRows logRows() {
    const auto openErrors =
        errors({EACCES, EBUSY, EIO, ELOOP, EMFILE, ENFILE, ENODEV, ENOENT, ENOMEM, ENOTDIR, ENXIO, EPERM});
    const auto writeErrors = errors({EAGAIN, EBADF, EFAULT, EINVAL, EIO, ENOSPC, EPERM, EPIPE});
    return {
        {.file = file,
         .operation = "log",
         .phase = Phase::StartUp,
         .call = Call::Open,
         .where = {.path = device},
         .faults = openErrors,
         .outcome = Outcome::Ignored,
         .text = "each line is lost and told on stderr",
         .run = firstLineLost},
        {.file = file,
         .operation = "log",
         .phase = Phase::StartUp,
         .call = Call::Open,
         .where = {.path = device},
         .faults = errors({EINTR}),
         .outcome = Outcome::Retried,
         .run = firstLineKept},
        {.file = file,
         .operation = "log",
         .phase = Phase::StartUp,
         .call = Call::Writev,
         .where = {.path = device},
         .faults = writeErrors,
         .outcome = Outcome::Ignored,
         .text = lost,
         .run = firstLineLost},
        {.file = file,
         .operation = "log",
         .phase = Phase::StartUp,
         .call = Call::Writev,
         .where = {.path = device},
         .faults = errors({EINTR}),
         .outcome = Outcome::Retried,
         .run = firstLineKept},
        {.file = file,
         .operation = "log",
         .phase = Phase::Running,
         .call = Call::Writev,
         .where = {.path = device},
         .faults = writeErrors,
         .outcome = Outcome::Ignored,
         .text = lost,
         .run = laterLineLost},
        {.file = file,
         .operation = "log",
         .phase = Phase::Running,
         .call = Call::Writev,
         .where = {.path = device},
         .faults = errors({EINTR}),
         .outcome = Outcome::Retried,
         .run = laterLineKept},
        {.file = file,
         .operation = "log",
         .phase = Phase::Running,
         .call = Call::Writev,
         .where = {.path = device},
         .faults = shorts(0, 40),
         .outcome = Outcome::Ignored,
         .text = "the rest of the line is lost",
         .run = laterLineKept},
        {.file = file,
         .operation = "setDevice",
         .phase = Phase::Running,
         .call = Call::Close,
         .where = {.path = device},
         .faults = errors({EBADF, EINTR, EIO}),
         .outcome = Outcome::Ignored,
         .run = changeDevice},
    };
}
