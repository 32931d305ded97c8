#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/event/eventhandling.h"
#include "faultmatrix.h"
#include "records.h"

namespace {

constexpr const char* path = "/dev/input/touchscreen0";

void feedKey(const Rig& rig) {
    const auto event = key(256, 1);
    ASSERT_TRUE(rig.world.driver.feed(path, &event, sizeof event));
}

struct Reader {
    EventHandling device{path};
    int keys = 0;
    explicit Reader(const Rig& rig) {
        rig.world.driver.plug(path);
        device.setKeyCallback([this](const EventHandling::input_event&) { ++keys; });
    }
};

void openAtStart(const Rig& rig) {
    Reader reader(rig);
    rig.arm();
    EXPECT_FALSE(reader.device.poll());
    EXPECT_TRUE(reader.device.poll());
}

void openAgain(const Rig& rig) {
    Reader reader(rig);
    reader.device.poll();
    Platform::Virtual::failCall(Call::Read, ENODEV, {.path = path});
    reader.device.poll();
    rig.arm();
    EXPECT_FALSE(reader.device.poll());
    EXPECT_TRUE(reader.device.poll());
}

/// One pass over a device that has a record to give, and the keys heard in it and in the next one.
void readKey(const Rig& rig, int now, int later) {
    Reader reader(rig);
    reader.device.poll();
    feedKey(rig);
    rig.arm();
    reader.device.poll();
    EXPECT_EQ(reader.keys, now);
    Platform::Virtual::clearFaults();
    reader.device.poll();
    EXPECT_EQ(reader.keys, later);
}

void readRetried(const Rig& rig) {
    readKey(rig, 1, 1);
}

void readNothingYet(const Rig& rig) {
    Reader reader(rig);
    reader.device.poll();
    rig.arm();
    EXPECT_TRUE(reader.device.poll());
}

void readTold(const Rig& rig) {
    readNothingYet(rig);
    EXPECT_NE(rig.world.lastLogLine().find("Read from /dev/input/touchscreen0: "), std::string::npos);
}

void readShort(const Rig& rig) {
    Reader reader(rig);
    reader.device.poll();
    feedKey(rig);
    rig.arm();
    EXPECT_TRUE(reader.device.poll());
    EXPECT_EQ(reader.keys, 0);
    EXPECT_NE(rig.world.lastLogLine().find("Dropped a short record"), std::string::npos);
}

void readVanished(const Rig& rig) {
    Reader reader(rig);
    feedKey(rig);
    reader.device.poll();
    EXPECT_EQ(reader.keys, 1);
    rig.arm();
    reader.device.poll();
    EXPECT_EQ(reader.keys, 2) << "the key that was down is released";
    EXPECT_EQ(reader.device.state(), DelayedOpen::Idle);
}

void closeVanished(const Rig& rig) {
    Reader reader(rig);
    reader.device.poll();
    Platform::Virtual::failCall(Call::Read, ENODEV, {.path = path});
    rig.arm();
    reader.device.poll();
    rig.done();
    EXPECT_TRUE(reader.device.poll());
}

void sleepBetweenTries(const Rig& rig) {
    EventHandling device(path);
    device.setTimeout(0.05F);
    rig.arm();
    EXPECT_FALSE(device.waitUntilDone());
}

void sleepRefused(const Rig& rig) {
    EventHandling device(path);
    bool present = false;
    Platform::Virtual::onCall(Call::Open, [&] { present = true; }, {.nth = 2, .path = path});
    Platform::Virtual::onCall(Call::Open, [&] { rig.world.driver.plug(path); }, {.nth = 2, .path = path});
    rig.arm();
    EXPECT_TRUE(device.waitUntilDone());
    EXPECT_TRUE(present);
}

}  // namespace

FaultRows inputDeviceRows() {
    const Faults openErrors = {EACCES, EBUSY,  EINTR,  EIO,     ELOOP, EMFILE, ENFILE,
                               ENODEV, ENOENT, ENOMEM, ENOTDIR, ENXIO, EPERM};
    const SeamCall open = {Call::Open, {.path = path}};
    const SeamCall read = {Call::Read, {.path = path}};
    const char* const tried = "at the next polls, until the timeout is over";

    FaultTable table("apps/common/event/eventhandling.cpp");
    table.operation("EventHandling::poll", Phase::StartUp);
    table.retried(openAtStart, open, openErrors, tried);
    table.operation("EventHandling::poll", Phase::Running);
    table.retried(openAgain, open, openErrors, tried);
    table.retried(readRetried, read, {EINTR});
    table.ignored(readNothingYet, read, {EAGAIN}, "there is nothing to read now");
    table.ignored(readVanished, read, {ENODEV},
                  "contacts and keys are released, the device is closed and opened anew when it appears");
    table.ignored(readTold, read, {EBADF, EFAULT, EINVAL, EIO, EISDIR, ENXIO}, "told once until a record comes");
    table.ignored(readShort, read, shorts(1, 15), "the short record is dropped with a warning");
    table.ignored(closeVanished, {Call::Close, {.path = path}}, {EBADF, EINTR, EIO});
    return table.rows();
}

FaultRows delayedOpenRows() {
    FaultTable table("apps/libs/delayedopen/delayedopen.cpp");
    table.operation("DelayedOpen::waitUntilDone", Phase::StartUp);
    table.retried(sleepBetweenTries, Call::Sleep, {EINTR}, "with what is left of the time");
    table.ignored(sleepRefused, Call::Sleep, {EFAULT, EINVAL}, "the next try comes at once");
    return table.rows();
}
