#include "tests/board/guest/display.h"

#include <fcntl.h>
#include <linux/fb.h>
#include <png.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "apps/libs/png/encodepng.h"
#include "tests/board/guest/expect.h"
#include "tests/board/guest/kernel.h"

namespace Board {

namespace {

constexpr std::size_t pixelCount = std::size_t{displayWidth} * displayHeight;
constexpr std::size_t mappedBytes = 2 * pixelCount * sizeof(std::uint32_t);
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
    png_image head;
    std::memset(&head, 0, sizeof head);
    head.version = PNG_IMAGE_VERSION;
    expect(png_image_begin_read_from_file(&head, file.c_str()) != 0, file + " is no picture: " + head.message);
    expect(head.width <= displayWidth && head.height <= displayHeight, file + " is larger than the display");
    head.format = PNG_FORMAT_BGRA;
    std::vector<std::uint32_t> pixels(std::size_t{head.width} * head.height);
    expect(png_image_finish_read(&head, nullptr, pixels.data(), 0, nullptr) != 0, file + ": " + head.message);
    Picture picture(pixelCount);
    const std::size_t left = (displayWidth - head.width) / 2, top = (displayHeight - head.height) / 2;
    for (std::size_t y = 0; y < head.height; ++y)
        for (std::size_t x = 0; x < head.width; ++x)
            picture[(top + y) * displayWidth + left + x] = pixels[y * head.width + x] & shownBits;
    return picture;
}

void tellPicture(const std::string& name, const Picture& picture) {
    const std::string text = base64(encodePng(picture.data(), displayWidth, displayHeight));
    constexpr std::size_t lineLength = 100;
    for (std::size_t i = 0; i < text.size(); i += lineLength)
        std::printf("picture %s %s\n", name.c_str(), text.substr(i, lineLength).c_str());
}

std::size_t differences(const Picture& one, const Picture& other) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixelCount; ++i) count += one[i] != other[i] ? 1 : 0;
    return count;
}

Display::Display() : fd_(::open("/dev/fb0", O_RDWR | O_CLOEXEC)) {
    expect(fd_ >= 0, "/dev/fb0 cannot be opened");
    void* mapping = ::mmap(nullptr, mappedBytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd_, 0);
    expect(mapping != MAP_FAILED, "/dev/fb0 cannot be mapped");
    pixels_ = static_cast<std::uint32_t*>(mapping);
}

Display::~Display() {
    ::munmap(pixels_, mappedBytes);
    ::close(fd_);
}

unsigned Display::shownLine() const {
    fb_var_screeninfo info = {};
    expect(::ioctl(fd_, FBIOGET_VSCREENINFO, &info) == 0, "the display does not tell its offset");
    expect(info.yoffset <= displayHeight, "the display shows line " + std::to_string(info.yoffset));
    return info.yoffset;
}

Picture Display::shown() const {
    const std::uint32_t* first = pixels_ + std::size_t{shownLine()} * displayWidth;
    Picture picture(first, first + pixelCount);
    for (std::uint32_t& pixel : picture) pixel &= shownBits;
    return picture;
}

void Display::paint(const Picture& picture) {
    std::ranges::copy(picture, pixels_);
}

long long Display::pans() {
    return static_cast<long long>(moduleNumber("boardfb", "pans"));
}

long long Display::waits() {
    return static_cast<long long>(moduleNumber("boardfb", "waits"));
}

}  // namespace Board
