#include "tests/board/guest/display.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <numeric>
#include <span>

#include "apps/libs/png/encodepng.h"
#include "tests/board/guest/expect.h"
#include "tests/board/guest/kernel.h"

namespace Board {

namespace {

constexpr std::uint32_t shownBits = 0xffffff;

std::string base64(std::span<const std::byte> data) {
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, data.size() - i);
        unsigned group = 0;
        for (std::size_t j = 0; j < 3; ++j)
            group = group << 8 | (j < count ? std::to_integer<unsigned>(data[i + j]) : 0);
        for (std::size_t j = 0; j < 4; ++j) text += j <= count ? digits[group >> (18 - 6 * j) & 63] : '=';
    }
    return text;
}

}  // namespace

Picture loadPicture(const std::string& file) {
    Picture picture = Unit::readPixels(file);
    expect(!picture.colors.empty(), file + " is no picture");
    for (std::uint32_t& color : picture.colors) color &= shownBits;
    return picture;
}

Picture onDisplay(const Picture& picture, unsigned width, unsigned height, bool centred) {
    Picture shown = {width, height, std::vector<std::uint32_t>(std::size_t{width} * height)};
    const unsigned columns = std::min(width, picture.width), rows = std::min(height, picture.height);
    const unsigned left = centred ? (width - columns) / 2 : 0, top = centred ? (height - rows) / 2 : 0;
    for (std::size_t y = 0; y < rows; ++y)
        std::copy_n(picture.colors.begin() + static_cast<std::ptrdiff_t>(y * picture.width), columns,
                    shown.colors.begin() + static_cast<std::ptrdiff_t>((top + y) * width + left));
    return shown;
}

void tellPicture(const std::string& name, const Picture& picture) {
    const std::string text = base64(encodePng(picture.colors.data(), picture.width, picture.height));
    constexpr std::size_t lineLength = 100;
    for (std::size_t i = 0; i < text.size(); i += lineLength)
        std::printf("picture %s %s\n", name.c_str(), text.substr(i, lineLength).c_str());
}

/// Of two pictures of one size.
std::size_t differences(const Picture& one, const Picture& other) {
    return std::transform_reduce(one.colors.begin(), one.colors.end(), other.colors.begin(), std::size_t{0},
                                 std::plus<>(), std::not_equal_to<>());
}

Display::Display() : fd_(::open("/dev/fb0", O_RDWR | O_CLOEXEC)) {
    expect(fd_ >= 0, "/dev/fb0 cannot be opened");
    const fb_var_screeninfo size = info();
    width_ = size.xres;
    height_ = size.yres;
    void* mapping = ::mmap(nullptr, mappedBytes(), PROT_READ | PROT_WRITE, MAP_SHARED, fd_, 0);
    expect(mapping != MAP_FAILED, "/dev/fb0 cannot be mapped");
    pixels_ = static_cast<std::uint32_t*>(mapping);
}

Display::~Display() {
    ::munmap(pixels_, mappedBytes());
    ::close(fd_);
}

fb_var_screeninfo Display::info() const {
    fb_var_screeninfo info = {};
    expect(::ioctl(fd_, FBIOGET_VSCREENINFO, &info) == 0, "the display does not tell its size and offset");
    return info;
}

std::size_t Display::mappedBytes() const {
    return std::size_t{2} * width_ * height_ * sizeof *pixels_;
}

unsigned Display::shownLine() const {
    const unsigned line = info().yoffset;
    expect(line <= height_, "the display shows line " + std::to_string(line));
    return line;
}

Picture Display::shown() const {
    const std::uint32_t* first = pixels_ + std::size_t{shownLine()} * width_;
    Picture picture = {width_, height_, {first, first + std::size_t{width_} * height_}};
    for (std::uint32_t& color : picture.colors) color &= shownBits;
    return picture;
}

void Display::paint(const Picture& picture) {
    std::ranges::copy(picture.colors, pixels_);
}

long long Display::pans() {
    return static_cast<long long>(moduleNumber("boardfb", "pans"));
}

long long Display::waits() {
    return static_cast<long long>(moduleNumber("boardfb", "waits"));
}

}  // namespace Board
