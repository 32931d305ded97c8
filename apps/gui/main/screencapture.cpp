#include "apps/gui/main/screencapture.h"

#include <fcntl.h>
#include <png.h>

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdint>
#include <vector>

#include "apps/common/log/log.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/main/openfile.h"
#include "platform/system.h"

namespace {

void writeFile(png_structp png, png_bytep data, std::size_t size) {
    const int fd = *static_cast<const int*>(png_get_io_ptr(png));
    while (size > 0) {
        const ssize_t count = Platform::write(fd, data, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) png_error(png, "the file cannot be written");
        data += count;
        size -= static_cast<std::size_t>(count);
    }
}

/// libpng leaves by a long jump: no function between `setjmp` and the jump has a destructor.
class PngWriter {
  public:
    explicit PngWriter(int fd) : fd_(fd) {
        png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        if (png_ == nullptr) TERN_FATAL("PNG: create write struct error");
        info_ = png_create_info_struct(png_);
        if (info_ == nullptr) {
            png_destroy_write_struct(&png_, nullptr);
            TERN_FATAL("PNG: create info error");
        }
    }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;
    ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

    bool start() {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_set_write_fn(png_, &fd_, &writeFile, nullptr);
        return true;
    }
    bool setHeader(png_uint_32 width, png_uint_32 height) {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_set_IHDR(png_, info_, width, height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        return true;
    }
    bool writeRows(png_bytepp rows) {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_set_rows(png_, info_, rows);
        png_write_png(png_, info_, PNG_TRANSFORM_BGR, nullptr);
        return true;
    }

  private:
    int fd_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

bool isHarmless(std::string_view name) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    return name.find('/') == std::string_view::npos && name.find("..") == std::string_view::npos &&
           std::ranges::none_of(name, isControl);
}

}  // namespace

std::optional<std::string> ScreenCapture::path(std::string_view name, const std::tm& time) {
    if (name.size() > longestName) {
        TERN_LOG(Log::Warn, "No screen capture: its name is longer than %zu bytes", longestName);
        return std::nullopt;
    }
    if (!isHarmless(name)) {
        TERN_LOG(Log::Warn, "No screen capture: its name must not hold '/', '..' or control characters");
        return std::nullopt;
    }
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S-", &time);
    return "/tmp/gui-capture-" + std::string(stamp) + std::string(name) + ".png";
}

void ScreenCapture::write(const LinuxFramebuffer& framebuffer, const std::string& path) {
    if (framebuffer.bitsPerPixel() != 32)
        TERN_FATAL("PNG: a capture needs a display of 32 bits a pixel, this one has %i", framebuffer.bitsPerPixel());
    const OpenFile file(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const auto width = static_cast<png_uint_32>(framebuffer.width());
    const auto height = static_cast<png_uint_32>(framebuffer.height());
    auto* pixels = static_cast<std::uint32_t*>(framebuffer.previousAddress());
    std::vector<png_bytep> rows(height);
    for (std::size_t y = 0; y < height; ++y) rows[y] = reinterpret_cast<png_bytep>(pixels + y * width);
    PngWriter writer(file.descriptor());
    if (!writer.start()) TERN_FATAL("PNG: init io error");
    if (!writer.setHeader(width, height)) TERN_FATAL("PNG: write info error");
    if (!writer.writeRows(rows.data())) TERN_FATAL("PNG: write image error");
}
