#include "apps/libs/png/encodepng.h"

#include <gtest/gtest.h>
#include <png.h>

#include <vector>

namespace {

std::vector<std::uint8_t> decoded(const std::vector<std::byte>& file, unsigned& width, unsigned& height) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) return {};
    EXPECT_EQ(image.format, static_cast<png_uint_32>(PNG_FORMAT_RGB)) << "no alpha in the file";
    width = image.width;
    height = image.height;
    std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) != 0 ? bytes : std::vector<std::uint8_t>();
}

}  // namespace

TEST(EncodePng, KeepsEachPixelAndDropsAlpha) {
    const std::uint32_t pixels[] = {0xff010203, 0x00fefdfc, 0x80000000, 0xffffffff, 0xff00ff00, 0xff0000ff};
    unsigned width = 0, height = 0;
    const std::vector<std::uint8_t> expected = {1,   2,   3,   0xfe, 0xfd, 0xfc, 0, 0, 0,
                                                255, 255, 255, 0,    255,  0,    0, 0, 255};
    EXPECT_EQ(decoded(encodePng(pixels, 3, 2), width, height), expected);
    EXPECT_EQ(width, 3U);
    EXPECT_EQ(height, 2U);
    EXPECT_TRUE(encodePng(pixels, 0, 2).empty());
    EXPECT_TRUE(encodePng(pixels, 2, 0).empty());
}
