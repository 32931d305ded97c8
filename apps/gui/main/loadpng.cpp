#include "apps/gui/main/loadpng.h"

#include <fcntl.h>
#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdint>
#include <vector>

#include "apps/common/log/log.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/main/openfile.h"
#include "platform/system.h"

namespace {

void readFile(png_structp png, png_bytep data, std::size_t size) {
    const int fd = *static_cast<const int*>(png_get_io_ptr(png));
    while (size > 0) {
        const ssize_t count = Platform::read(fd, data, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) png_error(png, "the file ends too early");
        data += count;
        size -= static_cast<std::size_t>(count);
    }
}

void ignoreWarning(png_structp, png_const_charp) {}

/// The structures of libpng, which leaves by a long jump: no function between `setjmp` and the jump has a destructor.
class PngReader {
  public:
    explicit PngReader(int fd) : fd_(fd) {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, &ignoreWarning);
        if (png_ == nullptr) TERN_FATAL("PNG: create read struct error");
        info_ = png_create_info_struct(png_);
        if (info_ == nullptr) {
            png_destroy_read_struct(&png_, nullptr, nullptr);
            TERN_FATAL("PNG: create info error");
        }
    }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }

    bool readHeader() {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_set_read_fn(png_, &fd_, &readFile);
        png_read_info(png_, info_);
        return true;
    }
    /// Whatever the file holds becomes four bytes a pixel: blue, green, red, alpha.
    bool transform() {
        if (setjmp(png_jmpbuf(png_))) return false;
        const int colorType = png_get_color_type(png_, info_);
        const bool transparency = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
        png_set_strip_16(png_);
        if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png_);
        if (colorType == PNG_COLOR_TYPE_GRAY) png_set_expand_gray_1_2_4_to_8(png_);
        if (transparency) png_set_tRNS_to_alpha(png_);
        if ((colorType & PNG_COLOR_MASK_ALPHA) == 0 && !transparency) png_set_filler(png_, 0xff, PNG_FILLER_AFTER);
        if ((colorType & PNG_COLOR_MASK_COLOR) == 0) png_set_gray_to_rgb(png_);
        png_set_bgr(png_);
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return png_get_rowbytes(png_, info_) == std::size_t{width()} * 4;
    }
    bool readImage(png_bytepp rows) {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_read_image(png_, rows);
        return true;
    }

    unsigned width() const { return png_get_image_width(png_, info_); }
    unsigned height() const { return png_get_image_height(png_, info_); }

  private:
    int fd_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

std::vector<png_bytep> centredRows(LinuxFramebuffer& framebuffer, unsigned width, unsigned height) {
    const auto screenWidth = static_cast<unsigned>(framebuffer.width());
    const auto screenHeight = static_cast<unsigned>(framebuffer.height());
    const std::size_t left = (screenWidth - width) / 2;
    const std::size_t top = (screenHeight - height) / 2;
    auto* pixels = static_cast<std::uint32_t*>(framebuffer.currentAddress());
    std::vector<png_bytep> rows(height);
    for (std::size_t y = 0; y < height; ++y)
        rows[y] = reinterpret_cast<png_bytep>(pixels + (top + y) * screenWidth + left);
    return rows;
}

}  // namespace

void loadPng(LinuxFramebuffer& framebuffer, const std::string& path) {
    if (framebuffer.bitsPerPixel() != 32)
        TERN_FATAL("PNG: a picture needs a display of 32 bits a pixel, this one has %i", framebuffer.bitsPerPixel());
    const OpenFile file(path, O_RDONLY);
    PngReader reader(file.descriptor());
    if (!reader.readHeader()) TERN_FATAL("PNG: read error");
    if (reader.width() > static_cast<unsigned>(framebuffer.width())) TERN_FATAL("PNG: width exceeds framebuffer");
    if (reader.height() > static_cast<unsigned>(framebuffer.height())) TERN_FATAL("PNG: height exceeds framebuffer");
    if (!reader.transform()) TERN_FATAL("PNG: read error");
    framebuffer.clear();
    auto rows = centredRows(framebuffer, reader.width(), reader.height());
    if (!reader.readImage(rows.data())) TERN_FATAL("PNG: read error");
}
