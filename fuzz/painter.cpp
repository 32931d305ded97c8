// Random operations on a small surface between guards. A write outside the surface traps; the sanitizers find the rest.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/ringsector.h"
#include "tests/support/guardedpixels.h"

namespace {

/// Hands out the input's bytes; zeros when they are used up.
class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    bool empty() const { return data_ == end_; }
    std::uint8_t byte() { return empty() ? std::uint8_t{0} : *data_++; }
    std::uint32_t word() { return byte() | byte() << 8 | byte() << 16 | static_cast<std::uint32_t>(byte()) << 24; }
    /// Mostly near the surface, now and then anywhere.
    int place() { return byte() % 8 == 0 ? static_cast<int>(word()) : static_cast<std::int8_t>(byte()); }
    std::int16_t side() { return static_cast<std::int16_t>(place()); }
    Engine::Rect rect() { return {side(), side(), side(), side()}; }

  private:
    const std::uint8_t* data_;
    const std::uint8_t* end_;
};

/// The pixels are as long as the description says and not a byte longer.
struct FuzzImage {
    explicit FuzzImage(Bytes& bytes) {
        const std::uint32_t format = bytes.byte() % 7;
        const std::uint32_t width = bytes.byte() % 48;
        const std::uint32_t height = bytes.byte() % 48;
        pixels.assign((std::size_t{width} * height), bytes.word());
        image = {0, width, height, format, pixels.data()};
        // Formats of smaller pixels get the upper end of the words, so that reading on leaves the block.
        size = format == 0 || format == 5 ? 1 : format == 3 || format == 4 ? 2 : 4;
        image.pixels = reinterpret_cast<const char*>(pixels.data()) + pixels.size() * (4 - size);
    }

    std::vector<std::uint32_t> pixels;
    std::size_t size;  ///< bytes of a pixel
    Engine::Image image;
};

template <typename T>
void draw(Engine::Framebuffer<T>& painter, Bytes& bytes) {
    switch (bytes.byte() % 12) {
        case 0: painter.fill(bytes.rect()); break;
        case 1: painter.erase(bytes.rect()); break;
        case 2: painter.setColors(bytes.word(), bytes.word()); break;
        case 3: painter.setRotationDegrees(bytes.place()); break;
        case 4: painter.pushClip(bytes.rect(), bytes.byte() % 2 == 0); break;
        case 5: painter.popClip(); break;
        case 6: {
            Engine::RingSector ring(bytes.place() % 4096, bytes.place());
            painter.drawRingSector(ring, bytes.place(), bytes.place(), bytes.place(), bytes.place());
            break;
        }
        case 7: painter.drawImage(FuzzImage(bytes).image, 0, 0, bytes.rect()); break;
        default: {
            const FuzzImage source(bytes);
            painter.drawImage(source.image, bytes.place(), bytes.place(), bytes.rect());
            painter.drawImageScaled(source.image, bytes.rect(), bytes.rect());
            painter.drawMaskHalo(source.image, bytes.place(), bytes.place(), bytes.rect(), bytes.place());
            painter.drawImageNine(source.image, bytes.rect());
            if (source.size == sizeof(T)) painter.copyImage(source.image, bytes.place(), 0, bytes.rect());
            break;
        }
    }
}

template <typename T>
void run(Bytes& bytes) {
    const std::uint32_t width = bytes.byte() % 70;
    const std::uint32_t height = bytes.byte() % 40;
    const std::uint32_t sampleBits = bytes.byte() % 4 == 0 ? bytes.byte() : 8;
    Support::GuardedPixels<T> pixels(width, height, T{});
    Engine::Framebuffer<T> painter(width, height, sampleBits, pixels.data(), bytes.byte());
    std::vector<Engine::Color> palette(bytes.byte(), 0xff00ff00);
    painter.setPalette(palette.data(), static_cast<int>(palette.size()));
    while (!bytes.empty()) draw(painter, bytes);
    painter.clear();
    if (!pixels.intact()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    switch (bytes.byte() % 3) {
        case 0: run<unsigned char>(bytes); break;
        case 1: run<unsigned short>(bytes); break;
        default: run<unsigned int>(bytes); break;
    }
    return 0;
}
