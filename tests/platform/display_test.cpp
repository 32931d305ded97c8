#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <sys/ioctl.h>

#include <cerrno>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

namespace {

using namespace Platform::Virtual;

struct Display : testing::Test {
    TemporaryInstance instance;
    Driver driver;
    int fb = Platform::open("/dev/fb0", O_RDWR | O_CLOEXEC);
    fb_var_screeninfo info = {};

    Display() {
        EXPECT_EQ(Platform::ioctl(fb, FBIOGET_VSCREENINFO, &info), 0);
        info.yres_virtual = info.yres * 2;
        EXPECT_EQ(Platform::ioctl(fb, FBIOPUT_VSCREENINFO, &info), 0);
    }
    ~Display() override { Platform::close(fb); }

    int put(fb_var_screeninfo wanted) const { return Platform::ioctl(fb, FBIOPUT_VSCREENINFO, &wanted); }
    int panTo(unsigned row) const {
        fb_var_screeninfo wanted = info;
        wanted.yoffset = row;
        return Platform::ioctl(fb, FBIOPAN_DISPLAY, &wanted);
    }
};

}  // namespace

TEST_F(Display, RefusesModesThatThePanelDoesNotHave) {
    auto wanted = info;
    wanted.xres = 320;
    EXPECT_EQ(put(wanted), -1);
    EXPECT_EQ(errno, EINVAL);
    wanted = info;
    wanted.yres_virtual = info.yres * 2 + 1;
    EXPECT_EQ(put(wanted), -1);
    wanted = info;
    wanted.yres_virtual = info.yres - 1;
    EXPECT_EQ(put(wanted), -1);
    EXPECT_EQ(Platform::ioctl(fb, 0x4605, &wanted), -1);
    EXPECT_EQ(errno, ENOTTY);
}

TEST_F(Display, PansWithinItsRowsOnly) {
    EXPECT_EQ(panTo(info.yres), 0);
    EXPECT_EQ(driver.shownBuffer(), 1U);
    for (const unsigned row : {info.yres + 1, ~0U}) {
        EXPECT_EQ(panTo(row), -1);
        EXPECT_EQ(errno, EINVAL);
    }
    EXPECT_EQ(driver.shownBuffer(), 1U);
    EXPECT_EQ(driver.pans(), 1U);
    EXPECT_EQ(Platform::ioctl(fb, FBIOGET_VSCREENINFO, &info), 0);
    EXPECT_EQ(info.yoffset, info.yres) << "a read tells what is shown";
}

TEST_F(Display, HasRoomForBothBuffersInEveryMode) {
    for (const unsigned bits : {8U, 16U, 24U, 32U}) {
        Instance::current().setScreen(33, 7, bits);
        fb_fix_screeninfo fixed = {};
        ASSERT_EQ(Platform::ioctl(fb, FBIOGET_FSCREENINFO, &fixed), 0);
        EXPECT_EQ(fixed.line_length, 33 * bits / 8);
        EXPECT_EQ(fixed.smem_len, 2 * 7 * fixed.line_length);
        EXPECT_EQ(Platform::fileSize(fb), static_cast<off_t>(fixed.smem_len));
    }
}
