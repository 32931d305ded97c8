#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <thread>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

namespace {

using Platform::Virtual::Driver;

constexpr unsigned long waitForVsync = 0x40044620, pan = 0x4606, getVariable = 0x4600;

struct Lockstep : testing::Test {
    Platform::Virtual::TemporaryInstance instance;
    int fb = Platform::open("/dev/fb0", O_RDWR | O_CLOEXEC);

    ~Lockstep() override { Platform::close(fb); }
    int waitVsync() const {
        int argument = 0;
        return Platform::ioctl(fb, waitForVsync, &argument);
    }
};

// A process that holds the display and waits to be killed.
class HoldingProcess {
  public:
    HoldingProcess() {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        pid_ = fork();
        if (pid_ == 0) {
            Driver driver;
            driver.holdVsync();
            driver.holdClock();
            EXPECT_EQ(write(ready[1], "h", 1), 1);
            for (;;) pause();
        }
        char byte;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
    }
    ~HoldingProcess() { end(); }
    void end() {
        if (pid_ <= 0) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

  private:
    pid_t pid_ = 0;
};

}  // namespace

TEST_F(Lockstep, TheProductRunsExactlyAsManyPassesAsSteps) {
    Driver driver;
    driver.holdVsync();
    std::atomic<int> passes = 0;
    std::atomic<bool> stop = false;
    std::thread product([&] {
        while (!stop) {
            ++passes;
            waitVsync();
        }
    });
    ASSERT_TRUE(driver.awaitRest());
    EXPECT_EQ(passes, 1);
    driver.step(10);
    ASSERT_TRUE(driver.awaitRest());
    EXPECT_EQ(passes, 11);
    for (int i = 0; i < 500; ++i) {
        driver.step();
        ASSERT_TRUE(driver.awaitRest());
        ASSERT_EQ(passes, 12 + i) << "a rest was seen before the step was used";
    }
    EXPECT_EQ(driver.vsyncWaits(), 511U);
    stop = true;
    driver.releaseVsync();
    product.join();
}

TEST_F(Lockstep, AtRestThePictureShownIsTheNewest) {
    Driver driver;
    driver.holdVsync();
    std::thread product([&] {
        fb_var_screeninfo info = {};
        Platform::ioctl(fb, getVariable, &info);
        info.yres_virtual = info.yres * 2;
        Platform::ioctl(fb, FBIOPUT_VSCREENINFO, &info);
        auto* pixels = static_cast<std::uint32_t*>(
            Platform::mmap(nullptr, 240 * 400 * 4 * 2, PROT_READ | PROT_WRITE, MAP_SHARED, fb, 0));
        pixels[240 * 400 + 5] = 0xff112233;
        info.yoffset = info.yres;
        Platform::ioctl(fb, pan, &info);
        Platform::munmap(pixels, 240 * 400 * 4 * 2);
    });
    ASSERT_TRUE(driver.awaitRest());
    EXPECT_EQ(driver.shownBuffer(), 1U);
    EXPECT_EQ(driver.pans(), 1U);
    const auto picture = driver.shot();
    ASSERT_EQ(picture.pixels.size(), 240U * 400U);
    EXPECT_EQ(picture.pixels[5], 0xff112233U);
    driver.step();
    product.join();
}

TEST_F(Lockstep, ASignalEndsAHeldWaitWithEintr) {
    struct sigaction action = {}, old = {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &old);
    Driver driver;
    driver.holdVsync();
    int result = 0, error = 0;
    std::atomic<bool> back = false;
    std::thread product([&] {
        result = waitVsync();
        error = errno;
        back = true;
    });
    ASSERT_TRUE(driver.awaitRest());
    while (!back) {  // a signal just before the wait proper interrupts nothing
        pthread_kill(product.native_handle(), SIGUSR1);
        std::this_thread::yield();
    }
    product.join();
    sigaction(SIGUSR1, &old, nullptr);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(error, EINTR);
}

TEST_F(Lockstep, ADriverThatDiesWhileHoldingSetsTheProductFree) {
    HoldingProcess process;
    Driver watcher;
    std::atomic<bool> done = false;
    std::thread product([&] {
        waitVsync();
        done = true;
    });
    ASSERT_TRUE(watcher.awaitRest());
    EXPECT_FALSE(done);
    const auto before = watcher.time();
    process.end();
    product.join();
    EXPECT_TRUE(done);
    EXPECT_EQ(watcher.instance().control().clockHeld, 0U) << "the clock was set free with the display";
    EXPECT_GE(watcher.time(), before) << "and went on from where it was held";
}

TEST_F(Lockstep, AHoldLastsAsLongAsOneOfItsDriversLives) {
    HoldingProcess process;
    Driver second, third;
    const auto& block = second.instance().control();
    second.holdVsync();
    third.holdVsync();
    third.releaseVsync();
    process.end();
    Platform::Virtual::Instance::current().liftAbandonedHolds();
    EXPECT_EQ(block.vsyncHeld, 1U);
    EXPECT_EQ(block.clockHeld, 0U) << "which only the dead one had held";
    second.releaseVsync();
    EXPECT_EQ(block.vsyncHeld, 0U);
    EXPECT_EQ(waitVsync(), 0);
}

TEST_F(Lockstep, AwaitingARestThatNeverComesEnds) {
    Driver driver;
    driver.holdVsync();
    EXPECT_FALSE(driver.awaitRest(1)) << "nobody waits for the display";
    driver.step();
    EXPECT_FALSE(driver.awaitRest(1)) << "nobody takes the step";
}
