#include "apps/gui/main/screensaveranimation.h"

#include <array>
#include <cmath>

namespace {

constexpr float pi = 3.1415927F;
constexpr int period = 5000;  // milliseconds

struct Factors {
    float red, green, blue;
};

constexpr std::array<Factors, 10> colors = {{{1, 1, 1},
                                             {1, 1, 1},
                                             {1, 0.5F, 0.5F},
                                             {1, 0, 0},
                                             {1, 0.7F, 0},
                                             {1, 1, 0},
                                             {0, 1, 0},
                                             {0, 1, 1},
                                             {0, 0, 1},
                                             {1, 0, 1}}};

std::uint32_t pixelOf(const Factors& color, float v) {
    if (!(v >= -1 && v <= 1)) return 0;
    const float brightness = (std::cos(v * pi) + 1) * 0.5F * 255;
    const auto channel = [brightness](float factor) { return static_cast<std::uint32_t>(factor * brightness); };
    return channel(color.red) << 16 | channel(color.green) << 8 | channel(color.blue);
}

}  // namespace

void ScreenSaverAnimation::activate(int mode, int speed) {
    mode_ = mode;
    colorIndex_ = mode >= 0 && mode < static_cast<int>(colors.size()) ? mode : 0;
    speed_ = speed;
}

float ScreenSaverAnimation::phase(std::int64_t steadyMilliseconds) const {
    const float within = static_cast<float>(static_cast<int>(steadyMilliseconds % period));
    return (within / 2500 - 1) * (static_cast<float>(speed_) + 1);
}

void ScreenSaverAnimation::changeColor(float phase) {
    if (phase > 0) risen_ = true;
    if (!(phase < 0) || !risen_ || mode_ != 0) return;
    risen_ = false;
    colorIndex_ = colorIndex_ + 1 < static_cast<int>(colors.size()) ? colorIndex_ + 1 : 1;
}

void ScreenSaverAnimation::draw(std::uint32_t* pixels, int width, int height, std::int64_t steadyMilliseconds) {
    if (mode_ == slideshow || width <= 0 || height <= 0) return;
    const float now = phase(steadyMilliseconds);
    changeColor(now);
    const Factors& color = colors[static_cast<std::size_t>(colorIndex_)];
    const float k = 10.0F / (static_cast<float>(width) * static_cast<float>(height));
    for (int i = -(height / 2); i < height - height / 2; ++i)
        for (int j = -(width / 2); j < width - width / 2; ++j)
            *pixels++ = pixelOf(color, 6 * now - static_cast<float>(i * i) * k - static_cast<float>(j * j) * k);
}
