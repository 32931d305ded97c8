#include "embedded-gui-engine/framebuffer.h"

#include <algorithm>
#include <limits>
#include <new>

#include "engine/src/raster/draw.h"

namespace Engine {

using Raster::Area;

namespace {

/// Pixels of the greatest block that a clone may have.
template <typename T>
constexpr std::uint64_t pixelLimit = std::numeric_limits<std::uint64_t>::max();
template <>
constexpr std::uint64_t pixelLimit<unsigned short> = (std::uint64_t{1} << 30) - 4;
template <>
constexpr std::uint64_t pixelLimit<unsigned int> = (std::uint64_t{1} << 29) - 1;

std::int16_t narrow(std::int64_t value) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, INT16_MIN, INT16_MAX));
}

TargetColors<unsigned char> paletteIndices(const Raster::Palette& palette, std::uint64_t ramp, Color foreground,
                                           Color background) {
    std::int64_t backgroundIndex = -1;
    std::int64_t foregroundIndex = 0;
    for (std::int64_t index = 0; index < palette.count; ++index) {
        if (palette.colors[index] == background) backgroundIndex = index;
        if (palette.colors[index] == foreground) foregroundIndex = index;
        if (backgroundIndex >= 0 && static_cast<std::uint64_t>(index - backgroundIndex) == ramp) break;
    }
    return {static_cast<unsigned char>(std::max<std::int64_t>(backgroundIndex, 0)),
            static_cast<unsigned char>(foregroundIndex)};
}

int alignedStart(Painter::Align align, int start, int size, int inner) {
    switch (align) {
        case Painter::Align::Centre: return start + (size - inner) / 2;
        case Painter::Align::End: return start + size - inner;
        default: return start;
    }
}

}  // namespace

template <typename T>
Framebuffer<T>::Framebuffer(std::uint32_t width, std::uint32_t height, std::uint32_t sampleBits, void* pixels,
                            std::uint32_t rotation)
    : Surface(width, height, sampleBits, pixels, rotation & 3), kernels_(Raster::kernelsOf<T>(Raster::bestIsa())) {
    Framebuffer::resetClip();
}

template <typename T>
Framebuffer<T>::Framebuffer(const Framebuffer& other)
    : Painter(other),
      Surface(other),
      kernels_(other.kernels_),
      palette_(other.palette_),
      paletteSize_(other.paletteSize_),
      clip_(other.clip_),
      colors_(other.colors_) {}

template <typename T>
Framebuffer<T>& Framebuffer<T>::operator=(const Framebuffer& other) {
    if (this == &other) return *this;
    Painter::operator=(other);
    Surface::operator=(other);
    palette_ = other.palette_;
    paletteSize_ = other.paletteSize_;
    clip_ = other.clip_;
    colors_ = other.colors_;
    owned_.reset();
    return *this;
}

template <typename T>
Framebuffer<T>* Framebuffer<T>::withOwnPixels(std::uint32_t width, std::uint32_t height, std::uint32_t sampleBits,
                                              std::uint32_t rotation) {
    const std::uint64_t count = std::uint64_t{width} * height;
    if (count > std::min<std::uint64_t>(pixelLimit<T>, PTRDIFF_MAX / sizeof(T))) throw std::bad_array_new_length();
    std::unique_ptr<T[]> pixels(new T[static_cast<std::size_t>(count)]);
    auto* framebuffer = new Framebuffer(width, height, sampleBits, pixels.get(), rotation);
    framebuffer->owned_ = std::move(pixels);
    return framebuffer;
}

template <typename T>
Framebuffer<T>* Framebuffer<T>::clone() const {
    return withOwnPixels(width_, height_, sampleBits_, rotation_);
}

template <typename T>
Surface* Framebuffer<T>::createSurface(std::uint32_t width, std::uint32_t height) const {
    return withOwnPixels(width, height, sampleBits_, rotation_);
}

template <typename T>
Raster::Canvas<T> Framebuffer<T>::canvas() const {
    return {pixels(), static_cast<int>(width_), static_cast<int>(height_), rotation_};
}

template <typename T>
Area Framebuffer<T>::drawable() const {
    return intersect(Area::of(clip_), {0, 0, logicalWidth(), logicalHeight()});
}

template <typename T>
Area Framebuffer<T>::clipped(Rect rect) const {
    return intersect(Area::of(rect), drawable());
}

template <typename T>
void Framebuffer<T>::alignRect(Rect& inner, const Rect& outer) const {
    inner.y = narrow(alignedStart(verticalAlign_, outer.y, outer.height, inner.height));
    inner.x = narrow(alignedStart(horizontalAlign_, outer.x, outer.width, inner.width));
}

template <typename T>
void Framebuffer<T>::fillRect(Rect rect, bool blend) {
    const Area area = clipped(rect);
    if (area.empty()) return;
    const Raster::Target<T> target = joined(placed(canvas(), area));
    if constexpr (sizeof(T) == 1) {
        const bool invisible = palette_ != nullptr && colors_.background < paletteSize_ &&
                               Raster::alpha(palette_[colors_.background]) == 0;
        if (!(blend && invisible)) kernels_->fill(target, colors_.background);
    } else {
        const Color color = Raster::backgroundOf(colors_);
        if (!blend || Raster::alpha(color) == 255)
            kernels_->fill(target, colors_.background);
        else if (Raster::alpha(color) != 0)
            kernels_->blend(target, color);
    }
}

template <typename T>
void Framebuffer<T>::clear() {
    if (!clipStack_.empty()) return fillRect(clipStack_.back(), false);
    constexpr std::uint64_t pixelsAtOnce = sizeof(T) == 4 ? 1 : 4 / sizeof(T);
    const std::uint64_t count = std::uint64_t{width_} * height_ / pixelsAtOnce * pixelsAtOnce;
    const auto length = static_cast<std::ptrdiff_t>(count);
    kernels_->fill({pixels(), length, length, length > 0 ? 1 : 0}, colors_.background);
}

template <typename T>
bool Framebuffer<T>::erase(Rect rect) {
    if (clipped(rect).empty()) return false;
    fillRect(rect, false);
    return true;
}

template <typename T>
void Framebuffer<T>::setPalette(const Color* colors, int count) {
    palette_ = count > 0 ? colors : nullptr;
    paletteSize_ = palette_ != nullptr ? count : 0;
}

template <typename T>
int Framebuffer<T>::logicalWidth() const {
    return static_cast<int>((rotation_ & 1) != 0 ? height_ : width_);
}

template <typename T>
int Framebuffer<T>::logicalHeight() const {
    return static_cast<int>((rotation_ & 1) != 0 ? width_ : height_);
}

template <typename T>
bool Framebuffer<T>::setRotationDegrees(int angle) {
    const int turn = (angle % 360 + 360) % 360;
    if (turn % 90 != 0) return false;
    rotation_ = static_cast<std::uint32_t>(turn / 90);
    return true;
}

template <typename T>
void Framebuffer<T>::describe(Image& image) const {
    image.dataSize = static_cast<std::uint32_t>(std::uint64_t{width_} * height_ * sizeof(T));
    image.width = width_;
    image.height = height_;
    image.format = sizeof(T) == 1 ? Image::Indexed8 : Image::Argb1555;
    image.pixels = pixels_;
}

template <typename T>
void Framebuffer<T>::setClip(Rect rect) {
    clip_.x = std::max<std::int16_t>(rect.x, 0);
    clip_.y = std::max<std::int16_t>(rect.y, 0);
    clip_.width = narrow(std::min(clip_.x + rect.width, logicalWidth()) - clip_.x);
    clip_.height = narrow(std::min(clip_.y + rect.height, logicalHeight()) - clip_.y);
}

template <typename T>
void Framebuffer<T>::resetClip() {
    clip_ = {0, 0, narrow(logicalWidth()), narrow(logicalHeight())};
}

template <typename T>
void Framebuffer<T>::setColors(Color foreground, Color background) {
    if constexpr (sizeof(T) == 4)
        colors_ = {background, foreground};
    else if constexpr (sizeof(T) == 2)
        colors_ = {Raster::to1555(background), Raster::to1555(foreground), background, foreground};
    else
        colors_ = paletteIndices({palette_, paletteSize_}, Raster::sampleMax(sampleBits_), foreground, background);
}

template <typename T>
Raster::ImageStyle<T> Framebuffer<T>::imageStyle(Raster::Zero zero) const {
    return {*kernels_, {palette_, paletteSize_}, Raster::foregroundOf(colors_), sampleBits_, zero};
}

template <typename T>
void Framebuffer<T>::drawImage(const Image& image, int srcX, int srcY, Rect dst, std::uint32_t) {
    const Raster::Cut cut = cutToImage(clipped(dst), dst, srcX, srcY, image);
    if (cut.area.empty() || !Raster::isDrawable(image)) return;
    const Raster::Target<T> target = placed(canvas(), cut.area);
    const auto stride = static_cast<std::ptrdiff_t>(image.width);
    const std::ptrdiff_t origin =
        static_cast<std::ptrdiff_t>(cut.srcY) * stride + static_cast<std::ptrdiff_t>(cut.srcX);
    byFormat<T>(imageStyle(Raster::Zero::Drawn), image, [&](const auto* pixels, const auto& kernel) {
        alongRows(target, Raster::turned(rotation_, pixels + origin, stride, cut.area), kernel);
    });
}

template <typename T>
void Framebuffer<T>::copyImage(const Image& image, int srcX, int srcY, Rect dst) {
    const Raster::Cut cut = cutToImage(clipped(dst), dst, srcX, srcY, image);
    if (cut.area.empty() || !Raster::isDrawable(image)) return;
    const auto stride = static_cast<std::ptrdiff_t>(image.width);
    const std::ptrdiff_t origin =
        static_cast<std::ptrdiff_t>(cut.srcY) * stride + static_cast<std::ptrdiff_t>(cut.srcX);
    const Raster::Target<T> target = placed(canvas(), cut.area);
    const Raster::Source<T> source =
        Raster::turned(rotation_, static_cast<const T*>(image.pixels) + origin, stride, cut.area);
    if (source.step == 1 || source.step == -1)
        kernels_->copy(joined(target, source), source);
    else
        Raster::moves<T>().turn(target.first, target.rowStep, source, target.width, target.rows);
}

template class Framebuffer<unsigned char>;
template class Framebuffer<unsigned short>;
template class Framebuffer<unsigned int>;

}  // namespace Engine
