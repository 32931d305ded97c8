#include "apps/libs/png/encodepng.h"

#include <png.h>

namespace {

std::vector<std::uint8_t> rgbOf(const std::uint32_t* pixels, std::size_t count) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count * 3);
    for (std::size_t i = 0; i < count; ++i)
        for (const unsigned shift : {16U, 8U, 0U}) bytes.push_back(static_cast<std::uint8_t>(pixels[i] >> shift));
    return bytes;
}

}  // namespace

std::vector<std::byte> encodePng(const std::uint32_t* pixels, unsigned width, unsigned height) {
    if (width == 0 || height == 0) return {};
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGB;

    const auto rgb = rgbOf(pixels, std::size_t{width} * height);
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::byte> file(size);
    const int written = png_image_write_to_memory(&image, file.data(), &size, 0, rgb.data(), 0, nullptr);
    file.resize(written != 0 ? size : 0);
    return file;
}
