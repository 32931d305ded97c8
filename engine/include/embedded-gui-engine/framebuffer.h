#pragma once

#include <cstdint>
#include <memory>

#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/surface.h"

namespace Engine {

namespace Raster {
enum class Zero : std::uint8_t;
struct Area;
template <typename T>
struct Canvas;
template <typename T>
struct ImageStyle;
template <typename T>
struct Kernels;
}  // namespace Raster

/// Framebuffer's colours in the form that its pixels take.
template <typename T>
struct TargetColors;

template <>
struct TargetColors<unsigned int> {
    Color background = 0;
    Color foreground = 0;
};

template <>
struct TargetColors<unsigned short> {
    unsigned short background = 0;  ///< 1:5:5:5
    unsigned short foreground = 0;
    Color backgroundWord = 0;  ///< blends mix these 8-bit channels, not the pixels above
    Color foregroundWord = 0;
};

template <>
struct TargetColors<unsigned char> {
    unsigned char background = 0;  ///< palette indices
    unsigned char foreground = 0;
};

/// The software renderer over a block of pixels: unsigned int is 0xAARRGGBB, unsigned short is 1:5:5:5 and unsigned
/// char is an index into the palette.
///
/// Nothing is ever written outside the block, whatever the arguments are; nothing is allocated while drawing. Image
/// pixels must be aligned to their size. A copy is a second view of the same pixels and owns nothing.
template <typename T>
class Framebuffer final : public Painter, public Surface {
  public:
    /// Size in physical pixels. `pixels` is not owned and may be changed later; `rotation` is 0 to 3 quarter turns.
    /// `sampleBits` is the depth of a mask's sample, 8 for the product's images.
    Framebuffer(std::uint32_t width, std::uint32_t height, std::uint32_t sampleBits, void* pixels,
                std::uint32_t rotation);
    Framebuffer(const Framebuffer& other);
    Framebuffer& operator=(const Framebuffer& other);
    ~Framebuffer() override = default;

    /// Draws into another block of the same size from now on, for instance the back buffer of this frame.
    void setPixels(void* pixels) { pixels_ = pixels; }
    T* pixels() const { return static_cast<T*>(pixels_); }
    Rect clip() const { return clip_; }

    std::uint32_t width() const override { return width_; }
    std::uint32_t height() const override { return height_; }
    Painter* painter() override { return this; }

    /// Throws std::bad_array_new_length above 2^29-1 pixels of 32 bits or 2^30-4 of 16 bits, std::bad_alloc when memory
    /// is short; so does createSurface.
    Framebuffer* clone() const override;
    bool supportsDrawing() const override { return true; }
    void beginPaint() override {}
    void endPaint() override {}
    void reserved6() override {}
    void reserved7() override {}
    void drawRingSector(RingSector& ring, int cx, int cy, int angleA, int angleB) override;
    void alignRect(Rect& inner, const Rect& outer) const override;
    void drawImage(const Image& image, int srcX, int srcY, Rect dst, std::uint32_t key = 0) override;
    void copyImage(const Image& image, int srcX, int srcY, Rect dst) override;
    void drawImageScaled(const Image& image, Rect src, Rect dst) override;
    void drawMaskHalo(const Image& image, int srcX, int srcY, Rect dst, int radius) override;
    void fill(Rect rect) override { fillRect(rect, true); }
    /// With an empty clip stack the whole block is written, whatever the clip. 16-bit blocks are written in pairs and
    /// 8-bit blocks in fours of pixels: a rest is left as it was.
    void clear() override;
    bool erase(Rect rect) override;
    /// `colors` is not copied and must outlive its use; null or a count below 1 is no palette. An index without an
    /// entry draws nothing. Colours that are set already keep their indices until setColors.
    void setPalette(const Color* colors, int count) override;
    int logicalWidth() const override;
    int logicalHeight() const override;
    bool setRotationDegrees(int angle) override;
    std::uint32_t rotationIndex() const override { return rotation_; }
    std::uint32_t sampleBits() const override { return sampleBits_; }
    Surface* createSurface(std::uint32_t width, std::uint32_t height) const override;
    /// The format is 0 for 8 bits and 3 for both others, so the result is for copyImage only.
    void describe(Image& image) const override;
    bool isGlyphCached(std::uint32_t) const override { return false; }
    /// A negative origin becomes 0 and the size stays; the far edges are cut to the logical surface.
    void setClip(Rect rect) override;
    void resetClip() override;
    /// An index target takes the indices of the palette entries equal to the colours, 0 where there is none. The search
    /// ends 2^sampleBits - 1 entries after the background.
    void setColors(Color foreground, Color background) override;
    void reserved29() override {}
    void fillRect(Rect rect, bool blend) override;

  protected:
    void drawParts(const Image& image, std::span<const ImagePart> parts) override;

  private:
    static Framebuffer* withOwnPixels(std::uint32_t width, std::uint32_t height, std::uint32_t sampleBits,
                                      std::uint32_t rotation);
    Raster::Canvas<T> canvas() const;
    /// What may be drawn in: the clip, as far as it lies on the surface. A turn can leave it reaching outside.
    Raster::Area drawable() const;
    Raster::Area clipped(Rect rect) const;
    Raster::ImageStyle<T> imageStyle(Raster::Zero zero) const;

    const Raster::Kernels<T>* kernels_;
    const Color* palette_ = nullptr;
    std::int32_t paletteSize_ = 0;
    Rect clip_;
    TargetColors<T> colors_;
    std::unique_ptr<T[]> owned_;
};

extern template class Framebuffer<unsigned char>;
extern template class Framebuffer<unsigned short>;
extern template class Framebuffer<unsigned int>;

}  // namespace Engine
