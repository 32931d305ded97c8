#pragma once

#include <cstdint>

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// A picture, placed in the content by the widget's alignments.
class Icon : public Widget {
  public:
    enum class Tiling : std::uint8_t {
        Off = 0,
        Cross = 1  ///< copies fill the row and the column through the picture, not the plane
    };
    enum class Slicing : std::uint8_t {
        Off = 0,
        Nine = 1  ///< stretched over the whole widget, corners as they are
    };

    /// `image` is not owned and may be null: then nothing is drawn, the background included.
    constexpr explicit Icon(const WidgetParams& params, const Image* image = nullptr, Tiling tiled = Tiling::Off,
                            Slicing nineSliced = Slicing::Off)
        : Widget(params), image_(image), tiled_(tiled), nineSliced_(nineSliced) {}

    void setImage(const Image* image) { repaintIfChanged(image_, image); }
    const Image* image() const { return image_; }

    const char* objectName() const override { return nameOr("Icon"); }
    void draw(Painter& painter, Rect rect) override;

  private:
    void drawTiles(Painter& painter, Rect place, Rect content) const;

    const Image* image_;
    Tiling tiled_;
    Slicing nineSliced_;
};

}  // namespace Engine
