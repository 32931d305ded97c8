#include "tests/support/goldenimage.h"

#include <png.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>

namespace fs = std::filesystem;

namespace Support {

namespace {

/// Words of 0xAARRGGBB as they lie in memory.
constexpr png_uint_32 format = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;

png_image imageHead() {
    png_image head;
    std::memset(&head, 0, sizeof head);
    head.version = PNG_IMAGE_VERSION;
    return head;
}

std::optional<Picture32> readPng(const fs::path& path) {
    png_image head = imageHead();
    if (png_image_begin_read_from_file(&head, path.c_str()) == 0) return std::nullopt;
    head.format = format;
    Picture32 picture{head.width, head.height, {}};
    picture.pixels.resize(std::size_t{head.width} * head.height);
    if (png_image_finish_read(&head, nullptr, picture.pixels.data(), 0, nullptr) == 0) return std::nullopt;
    return picture;
}

bool writePng(const fs::path& path, const Picture32& picture) {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    png_image head = imageHead();
    head.width = picture.width;
    head.height = picture.height;
    head.format = format;
    return png_image_write_to_file(&head, path.c_str(), 0, picture.pixels.data(), 0, nullptr) != 0;
}

Picture32 difference(const Picture32& actual, const Picture32& expected) {
    Picture32 result = actual;
    for (unsigned y = 0; y < actual.height; ++y)
        for (unsigned x = 0; x < actual.width; ++x) {
            std::uint32_t& pixel = result.pixels[std::size_t{y} * actual.width + x];
            const bool same = x < expected.width && y < expected.height &&
                              pixel == expected.pixels[std::size_t{y} * expected.width + x];
            pixel = same ? 0xff000000U | ((pixel >> 2) & 0x3f3f3fU) : 0xffff0000U;
        }
    return result;
}

std::size_t countDifferences(const Picture32& actual, const Picture32& expected) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < actual.pixels.size(); ++i) count += actual.pixels[i] != expected.pixels[i] ? 1 : 0;
    return count;
}

std::string sizeOf(const Picture32& picture) {
    return std::to_string(picture.width) + " x " + std::to_string(picture.height);
}

testing::AssertionResult reject(const std::string& path, const Picture32& actual, const Picture32& expected,
                                const std::string& reason) {
    const fs::path folder = fs::path(TERN_BINARY_DIR) / "golden-failures" / fs::path(path).parent_path();
    const std::string stem = fs::path(path).stem().string();
    const fs::path drawn = folder / (stem + ".actual.png");
    const bool written =
        writePng(drawn, actual) && writePng(folder / (stem + ".difference.png"), difference(actual, expected));
    return testing::AssertionFailure()
           << path << ": " << reason << ". "
           << (written ? "Drawn picture: " + drawn.string() + ", difference beside it" : "It could not be written out")
           << ". If the drawn picture is right, run the test with TERN_ACCEPT_GOLDENS=1 and commit the file.";
}

}  // namespace

testing::AssertionResult matchesGolden(const Picture32& actual, const std::string& path) {
    const fs::path golden = fs::path(TERN_SOURCE_DIR) / path;
    const char* accept = std::getenv("TERN_ACCEPT_GOLDENS");
    if (accept != nullptr && std::strcmp(accept, "1") == 0)
        return writePng(golden, actual) ? testing::AssertionSuccess()
                                        : testing::AssertionFailure() << golden << " cannot be written";
    const auto expected = readPng(golden);
    if (!expected) return reject(path, actual, {}, "there is no golden image, or it cannot be read");
    if (expected->width != actual.width || expected->height != actual.height)
        return reject(path, actual, *expected,
                      "the picture is " + sizeOf(actual) + ", the golden " + sizeOf(*expected));
    if (*expected == actual) return testing::AssertionSuccess();
    return reject(path, actual, *expected,
                  std::to_string(countDifferences(actual, *expected)) + " pixels differ from the golden image");
}

}  // namespace Support
