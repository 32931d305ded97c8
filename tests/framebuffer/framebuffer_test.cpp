#include "apps/gui/common/fb-linux.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/common/log/log.h"
#include "platform/virtual/virtual.h"

namespace {

using namespace Platform::Virtual;
using Contents = LinuxFramebuffer::Contents;

constexpr const char* device = "/dev/fb0";
constexpr std::size_t wholeBuffer = 240 * 400 * 4;

struct Framebuffer : testing::Test {
    TemporaryInstance instance;
    Driver driver;

    Framebuffer() { Log::setDevice(nullptr); }  // opened anew in this instance

    static std::uint32_t& firstPixel(void* buffer) { return *static_cast<std::uint32_t*>(buffer); }

    static std::string fatalText(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no failure";
    }

    std::vector<std::string> logLines() const {
        std::vector<std::string> lines;
        std::ifstream log(path("/dev/kmsg"));
        for (std::string line; std::getline(log, line);) lines.push_back(line);
        return lines;
    }

    /// Puts a picture on the display as a boot loader does, before any process of ours.
    void paintDevice(std::uint32_t pixel) const {
        std::ofstream file(path(device), std::ios::binary | std::ios::in);
        for (std::size_t i = 0; i < 2 * wholeBuffer; i += sizeof pixel)
            file.write(reinterpret_cast<const char*>(&pixel), sizeof pixel);
    }
};

}  // namespace

TEST_F(Framebuffer, FlipsBetweenItsBuffers) {
    LinuxFramebuffer framebuffer(device, 2);
    framebuffer.open(Contents::Clear);
    EXPECT_EQ(framebuffer.width(), 240);
    EXPECT_EQ(framebuffer.height(), 400);
    EXPECT_EQ(framebuffer.bitsPerPixel(), 32);

    for (unsigned frame = 0; frame < 5; ++frame) {
        void* drawn = framebuffer.currentAddress();
        firstPixel(drawn) = 0xff000000 + frame;
        framebuffer.swap();
        EXPECT_EQ(framebuffer.previousAddress(), drawn);
        EXPECT_NE(framebuffer.currentAddress(), drawn);
        EXPECT_EQ(driver.shownBuffer(), frame % 2);
        EXPECT_EQ(driver.shot().pixels.front(), 0xff000000 + frame);
    }
    EXPECT_EQ(driver.pans(), 6U) << "one while opening, and one a frame";
    EXPECT_EQ(driver.vsyncWaits(), 1U);
}

TEST_F(Framebuffer, KeepsOrClearsThePictureThatItFinds) {
    paintDevice(0xff336699);
    {
        LinuxFramebuffer framebuffer(device, 2);
        framebuffer.open(Contents::Keep);
        EXPECT_EQ(firstPixel(framebuffer.currentAddress()), 0xff336699U);
    }
    LinuxFramebuffer framebuffer(device, 2);
    framebuffer.open(Contents::Clear);
    EXPECT_EQ(firstPixel(framebuffer.currentAddress()), 0U);
    EXPECT_EQ(driver.shot().pixels.back(), 0U) << "to the last pixel";
    EXPECT_EQ(firstPixel(framebuffer.previousAddress()), 0xff336699U) << "the current buffer only";
}

TEST_F(Framebuffer, LooksAtWhatAnotherShowsWithoutTouchingIt) {
    LinuxFramebuffer shown(device, 2);
    shown.open(Contents::Clear);
    LinuxFramebuffer onlooker(device);
    const unsigned pans = driver.pans();
    onlooker.open(Contents::Clear);
    EXPECT_EQ(onlooker.bufferCount(), 2);
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        firstPixel(shown.currentAddress()) = frame;
        shown.swap();
        EXPECT_EQ(firstPixel(onlooker.displayedAddress()), frame);
    }
    EXPECT_EQ(driver.pans(), pans + 3);
    EXPECT_NE(fatalText([&] { onlooker.clear(); }).find("Not allowed in read only mode"), std::string::npos);
    EXPECT_NE(fatalText([&] { onlooker.swap(); }).find("Not allowed in read only mode"), std::string::npos);
}

TEST_F(Framebuffer, SaysWhatTheDeviceIs) {
    Instance::current().setScreen(320, 240, 16);
    LinuxFramebuffer framebuffer(device, 2);
    framebuffer.open(Contents::Clear);
    EXPECT_EQ(framebuffer.bufferSize(), 320U * 240U * 2U);
    const auto lines = logLines();
    ASSERT_EQ(lines.size(), 4U);
    const auto endsWith = [](const std::string& line, const std::string& end) {
        EXPECT_TRUE(line.ends_with(end)) << line;
        EXPECT_NE(line.find("LogLight    "), std::string::npos) << line;
    };
    endsWith(lines[0], "Framebuffer is 320x240x16, virtual is 320x480");
    endsWith(lines[1], "  Pixel Clock: 4608kHz, Acceleration: 0, Capabilities: 00000000");
    endsWith(lines[2], "  PanX: 0, PanY: 1, WrapY: 0");
    endsWith(lines[3], "  Line: 640, MMIO start: 0x00000000, len: 0x00000000, SMEM start: 0x00000000, len: 0x0004b000");
}

TEST_F(Framebuffer, APictureThatWasNotShownIsStillTheOneToDraw) {
    LinuxFramebuffer framebuffer(device, 2);
    framebuffer.open(Contents::Keep);
    void* const drawn = framebuffer.currentAddress();
    failCall(Call::Ioctl, EIO, {.path = device});
    EXPECT_TRUE(fatalText([&] { framebuffer.swap(); }).ends_with("pan: Input/output error"));
    EXPECT_EQ(framebuffer.currentAddress(), drawn);
}

TEST_F(Framebuffer, MoreBuffersThanTheDeviceHasAreRefused) {
    LinuxFramebuffer framebuffer(device, 3);
    EXPECT_TRUE(fatalText([&] { framebuffer.open(Contents::Keep); }).ends_with("screen info: Invalid argument"));

    // A device that says yes and has no memory for it must not be drawn into.
    answerCall(Call::Ioctl, 0, {.nth = 3, .path = device});
    LinuxFramebuffer trusting(device, 3);
    EXPECT_TRUE(fatalText([&] {
                    trusting.open(Contents::Keep);
                }).ends_with("map framebuffer: 3 buffers of 384000 bytes do not fit the 768000 bytes of the device"));
}

TEST_F(Framebuffer, OfNoHeightHasNoBuffers) {
    Instance::current().control().screen.yres = 0;
    LinuxFramebuffer onlooker(device);
    const std::string text = fatalText([&] { onlooker.open(Contents::Keep); });
    EXPECT_TRUE(text.ends_with("map framebuffer: Invalid argument")) << text;
    EXPECT_EQ(onlooker.bufferCount(), 0);
    EXPECT_NO_THROW(onlooker.displayedAddress());
}
