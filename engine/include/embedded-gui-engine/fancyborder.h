#pragma once

#include <type_traits>

#include "embedded-gui-engine/border.h"
#include "embedded-gui-engine/image.h"

namespace Engine {

/// A frame out of a picture: corners as they are, edges and inside stretched. Its inside is that of the picture.
class FancyBorder : public Border {
  public:
    /// `image` is a square mask whose sides are multiples of 3; other sides are logged as an error and cut down. Not
    /// owned; null draws nothing. A border that is constant data logs when it is first drawn.
    constexpr FancyBorder(Color color, const Image* image) : Border(color), image_(image) {
        if (!std::is_constant_evaluated()) checkImage();
    }

    void draw(Painter& painter, Rect rect) override;
    int thickness() const override { return image_ != nullptr ? static_cast<int>(image_->width / 3) : 0; }
    const char* className() const override { return "FancyBorder"; }

  private:
    void checkImage();

    const Image* image_;
    bool checked_ = false;
};

}  // namespace Engine
