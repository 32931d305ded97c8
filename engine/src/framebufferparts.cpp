#include "embedded-gui-engine/framebuffer.h"
#include "engine/src/raster/draw.h"

namespace Engine {

using Raster::Area;

namespace {

bool contains(const Area& outer, const Area& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

/// What of a part is drawn. Nearly all parts lie inside, where there is nothing to cut.
Raster::Cut cutOf(const ImagePart& part, const Area& drawable, const Image& image) {
    const Area area = Area::of(part.place);
    const Area whole{0, 0, static_cast<int>(image.width), static_cast<int>(image.height)};
    if (contains(drawable, area) && contains(whole, {part.srcX, part.srcY, area.width, area.height}))
        return {area, part.srcX, part.srcY};
    return cutToImage(intersect(area, drawable), part.place, part.srcX, part.srcY, image);
}

}  // namespace

/// Glyphs are small: what is the same for all of them is settled once, and their way to the kernel is short.
template <typename T>
void Framebuffer<T>::drawParts(const Image& image, std::span<const ImagePart> parts) {
    const bool invisible = sizeof(T) > 1 && Raster::alpha(Raster::foregroundOf(colors_)) == 0;
    const bool fullDepth = sizeof(T) == 1 || sampleBits_ == Raster::fullDepth;
    if (image.format != Image::Mask8 || !fullDepth || invisible || !Raster::isDrawable(image))
        return Painter::drawParts(image, parts);

    const Area area = drawable();
    const Raster::Canvas<T> surface = canvas();
    const auto* const samples = static_cast<const std::uint8_t*>(image.pixels);
    const auto stride = static_cast<std::ptrdiff_t>(image.width);
    const auto mask = kernels_->mask;
    const Color color = Raster::foregroundOf(colors_);
    for (const ImagePart& part : parts) {
        const Raster::Cut cut = cutOf(part, area, image);
        if (cut.area.empty()) continue;
        const std::uint8_t* const origin = samples + static_cast<std::ptrdiff_t>(cut.srcY * stride + cut.srcX);
        alongRows(placed(surface, cut.area), Raster::turned(surface.rotation, origin, stride, cut.area),
                  [&](const auto& target, const auto& source) { mask(target, source, color); });
    }
}

template void Framebuffer<unsigned char>::drawParts(const Image&, std::span<const ImagePart>);
template void Framebuffer<unsigned short>::drawParts(const Image&, std::span<const ImagePart>);
template void Framebuffer<unsigned int>::drawParts(const Image&, std::span<const ImagePart>);

}  // namespace Engine
