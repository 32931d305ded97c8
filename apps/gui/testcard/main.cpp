// Shows the test card on the display for a second of flipped frames and says how fast they went. With a file name it
// also writes what the display then shows as a PNG picture: `testcard-virtual FILE`, where only the virtual display can
// be looked at from outside.
#include <cstdint>
#include <cstdio>
#include <exception>

#include "apps/common/log/log.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/testcard/testcard.h"
#include "apps/libs/png/encodepng.h"
#include "platform/system.h"

namespace {

constexpr int frames = 60;

void show(LinuxFramebuffer& framebuffer) {
    if (framebuffer.bitsPerPixel() != 32)
        TERN_FATAL("The test card needs 32 bits a pixel, the display has %i", framebuffer.bitsPerPixel());
    TestCard card(framebuffer.width(), framebuffer.height());
    const auto start = Platform::steadyNanoseconds();
    for (int frame = 1; frame <= frames; ++frame) {
        card.draw(static_cast<std::uint32_t*>(framebuffer.currentAddress()),
                  static_cast<float>(frame % frames) / frames);
        framebuffer.swap();
    }
    const auto seconds = static_cast<double>(Platform::steadyNanoseconds() - start) / 1e9;
    std::printf("The display of %i x %i showed %i frames in %.2f s.\n", framebuffer.width(), framebuffer.height(),
                frames, seconds);
}

void writePicture(LinuxFramebuffer& framebuffer, const char* path) {
    const auto file =
        encodePng(static_cast<const std::uint32_t*>(framebuffer.displayedAddress()),
                  static_cast<unsigned>(framebuffer.width()), static_cast<unsigned>(framebuffer.height()));
    std::FILE* out = std::fopen(path, "wb");
    const bool written = out != nullptr && std::fwrite(file.data(), 1, file.size(), out) == file.size();
    if (out == nullptr || std::fclose(out) != 0 || !written) TERN_ERRNO_FATAL(path);
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc > 2 || (argc == 2 && argv[1][0] == '-')) {
        std::fprintf(stderr, "Usage: testcard [FILE.png]: what the display shows is written there\n");
        return 2;
    }
    LinuxFramebuffer framebuffer("/dev/fb0", 2);
    framebuffer.open(LinuxFramebuffer::Contents::Clear);
    show(framebuffer);
    LinuxFramebuffer onlooker("/dev/fb0");
    onlooker.open(LinuxFramebuffer::Contents::Keep);
    if (argc > 1) writePicture(onlooker, argv[1]);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "testcard: %s\n", error.what());
    return 1;
}
