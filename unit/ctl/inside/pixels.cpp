#include "unit/ctl/inside/pixels.h"

#include <png.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "apps/libs/png/encodepng.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

constexpr std::uint32_t red = 0xff0000;
constexpr std::uint32_t colorBits = 0xffffff;

constexpr std::uint32_t quarter(std::uint32_t color) {
    return (color >> 2) & 0x3f3f3f;
}

}  // namespace

void writePixels(const Pixels& pixels, const std::string& file) {
    const auto png = encodePng(pixels.colors.data(), pixels.width, pixels.height);
    if (png.empty()) throw Problem("There is no picture for " + file + ".");
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    if (!out.flush()) throw Problem(file + " cannot be written: " + std::strerror(errno));
}

Pixels readPixels(const std::string& file) {
    Pixels pixels;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) return pixels;
    constexpr png_uint_32 largest = 4096;
    image.format = PNG_FORMAT_BGRA;
    if (image.width <= largest && image.height <= largest) {
        pixels = {image.width, image.height, std::vector<std::uint32_t>(std::size_t{image.width} * image.height)};
        if (png_image_finish_read(&image, nullptr, pixels.colors.data(), 0, nullptr) == 0) pixels = {};
    }
    png_image_free(&image);
    return pixels;
}

Pixels differenceOf(const Pixels& before, const Pixels& after) {
    if (before.width != after.width || before.height != after.height) return {};
    Pixels difference = before;
    for (std::size_t i = 0; i < difference.colors.size(); ++i)
        difference.colors[i] =
            ((before.colors[i] ^ after.colors[i]) & colorBits) != 0 ? red : quarter(before.colors[i]);
    return difference;
}

}  // namespace Unit
