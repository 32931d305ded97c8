#include "embedded-gui-engine/framebuffer.h"
#include "engine/src/raster/draw.h"

namespace Engine {

using Raster::Area;

/// Glyphs are small: what is the same for all of them is settled once.
template <typename T>
void Framebuffer<T>::drawParts(const Image& image, std::span<const ImagePart> parts) {
    if (!Raster::isDrawable(image)) return;
    const Area area = drawable();
    const auto stride = static_cast<std::ptrdiff_t>(image.width);
    byFormat<T>(imageStyle(Raster::Zero::Drawn), image, [&](const auto* pixels, const auto& kernel) {
        for (const ImagePart& part : parts) {
            const Raster::Cut cut =
                cutToImage(intersect(Area::of(part.place), area), part.place, part.srcX, part.srcY, image);
            if (cut.area.empty()) continue;
            const std::ptrdiff_t origin =
                static_cast<std::ptrdiff_t>(cut.srcY) * stride + static_cast<std::ptrdiff_t>(cut.srcX);
            alongRows(placed(canvas(), cut.area), Raster::turned(rotation_, pixels + origin, stride, cut.area), kernel);
        }
    });
}

template void Framebuffer<unsigned char>::drawParts(const Image&, std::span<const ImagePart>);
template void Framebuffer<unsigned short>::drawParts(const Image&, std::span<const ImagePart>);
template void Framebuffer<unsigned int>::drawParts(const Image&, std::span<const ImagePart>);

}  // namespace Engine
