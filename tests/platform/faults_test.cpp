#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cerrno>
#include <string>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

namespace {

using namespace Platform::Virtual;

struct Faults : testing::Test {
    TemporaryInstance instance;

    static int openLog() { return Platform::open("/dev/kmsg", O_RDWR); }
    static std::string error(const std::string& text) {
        std::string reason;
        EXPECT_FALSE(setFaults(text, reason)) << text;
        return reason;
    }
};

}  // namespace

TEST_F(Faults, StrikeTheNthCallOnly) {
    failCall(Call::Open, EACCES, {.nth = 2});
    const int first = openLog();
    EXPECT_GE(first, 0);
    EXPECT_EQ(openLog(), -1);
    EXPECT_EQ(errno, EACCES);
    const int third = openLog();
    EXPECT_GE(third, 0);
    Platform::close(first);
    Platform::close(third);
}

TEST_F(Faults, StrikeEachLaterCallOfAPathOnly) {
    failCall(Call::Write, EIO, {.andLater = true, .path = "/dev/kmsg"});
    const int log = openLog();
    const int other = Platform::open("/tmp/other", O_RDWR | O_CREAT, 0600);
    EXPECT_EQ(Platform::write(other, "a", 1), 1);
    EXPECT_EQ(Platform::write(log, "a", 1), -1);
    EXPECT_EQ(Platform::write(log, "a", 1), -1);
    EXPECT_EQ(errno, EIO);
    clearFaults();
    EXPECT_EQ(Platform::write(log, "a", 1), 1);
    Platform::close(log);
    Platform::close(other);
}

TEST_F(Faults, AShortTransferLeavesTheRest) {
    Driver driver;
    driver.plug("/dev/input/x");
    const int fd = Platform::open("/dev/input/x", O_RDONLY | O_NONBLOCK);
    ASSERT_TRUE(driver.feed("/dev/input/x", "0123456789", 10));
    shortenCall(Call::Read, 7, {.path = "/dev/input/x"});
    char buffer[16];
    EXPECT_EQ(Platform::read(fd, buffer, sizeof buffer), 7);
    EXPECT_EQ(Platform::read(fd, buffer, sizeof buffer), 3);
    EXPECT_EQ(buffer[0], '7');

    const int log = openLog();
    iovec parts[] = {{buffer, 2}, {buffer, 2}, {buffer, 2}};
    shortenCall(Call::Writev, 3);
    EXPECT_EQ(Platform::writev(log, parts, 3), 3);
    EXPECT_EQ(Platform::writev(log, parts, 3), 6);
    Platform::close(fd);
    Platform::close(log);
}

TEST_F(Faults, AnswersAndActionsStandInForTheSystem) {
    answerCall(Call::Mmap, 0);
    EXPECT_EQ(Platform::mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0), nullptr);
    failCall(Call::Mmap, ENOMEM);
    EXPECT_EQ(Platform::mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0), MAP_FAILED);
    failCall(Call::SemOpen, EMFILE);
    EXPECT_EQ(Platform::semOpen("/ready", O_CREAT, 0600, 0), SEM_FAILED);

    const unsigned before = callCount(Call::SchedYield);
    int actions = 0;
    onCall(Call::SchedYield, [&] { actions += Platform::schedYield() == 0; }, {.nth = 2});
    Platform::schedYield();
    EXPECT_EQ(actions, 0);
    Platform::schedYield();
    EXPECT_EQ(actions, 1);
    EXPECT_EQ(callCount(Call::SchedYield) - before, 3U);
}

TEST_F(Faults, AreReadFromText) {
    std::string reason;
    ASSERT_TRUE(setFaults("open@/dev/kmsg:1:ENOSPC;write:2+:EIO;read:1:short=0;", reason)) << reason;
    EXPECT_EQ(openLog(), -1);
    EXPECT_EQ(errno, ENOSPC);
    const int log = openLog();
    EXPECT_EQ(Platform::write(log, "a", 1), 1);
    EXPECT_EQ(Platform::write(log, "a", 1), -1);
    EXPECT_EQ(Platform::write(log, "a", 1), -1);
    char byte;
    EXPECT_EQ(Platform::read(log, &byte, 1), 0);
    Platform::close(log);
}

TEST_F(Faults, TextThatIsWrongNamesItsMistakeAndSetsNothing) {
    EXPECT_EQ(error("read:1:EIO;opne:1:EIO"), "\"opne:1:EIO\" names no call of the seam");
    EXPECT_EQ(error("open:0:EIO"), "\"open:0:EIO\" counts from 1, with a '+' behind the number for each later one too");
    EXPECT_EQ(error("open:1:EWHAT"), "\"open:1:EWHAT\" ends in no errno, short=BYTES or answer=VALUE");
    EXPECT_EQ(error("open"), "\"open\" is not CALL[@PATH]:NTH[+]:EFFECT");
    EXPECT_NE(error("read:1:short=-1"), "");
    const int log = openLog();
    char byte;
    EXPECT_EQ(Platform::read(log, &byte, 1), 0);
    Platform::close(log);
}
