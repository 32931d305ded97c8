#include "apps/gui/main/displaytest.h"

#include <array>

namespace {

void fillWhole(Engine::Painter& painter, Engine::Color color) {
    painter.resetClipStack();
    painter.setBackground(color);
    painter.clear();
    painter.endPaint();
}

void drawBands(Engine::Painter& painter) {
    static constexpr std::array<Engine::Color, 4> bands = {0xffffff, 0xff0000, 0x00ff00, 0x0000ff};
    const int width = painter.logicalWidth() / 4;
    const int height = painter.logicalHeight();
    painter.resetClipStack();
    for (int y = 0; y < height; ++y) {
        const auto value = static_cast<Engine::Color>(255 * y / height);
        const Engine::Color grey = value << 16 | value << 8 | value;
        for (std::size_t band = 0; band < bands.size(); ++band) {
            painter.setBackground(grey & bands[band]);
            painter.fillRect({static_cast<std::int16_t>(static_cast<int>(band) * width), static_cast<std::int16_t>(y),
                              static_cast<std::int16_t>(width), 1},
                             false);
        }
    }
}

}  // namespace

void drawDisplayTest(Engine::Painter& painter, int picture) {
    static constexpr std::array<Engine::Color, 5> colors = {0xff0000, 0x00ff00, 0x0000ff, 0xffffff, 0x000000};
    if (picture >= 1 && picture <= 5)
        fillWhole(painter, colors[static_cast<std::size_t>(picture - 1)]);
    else if (picture == 6)
        drawBands(painter);
}
