#pragma once

#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/widget.h"

namespace TextTest {

inline constexpr Engine::Color black = 0xFF000000;
inline constexpr Engine::Color white = 0xFFFFFFFF;
inline constexpr Engine::Color red = 0xFFFF0000;
inline constexpr Engine::Color blue = 0xFF0000FF;

/// A small display whose contents are read as lines of characters: '#' white, 'r' red, 'b' blue, '.' black, ' ' what
/// was never drawn, '?' anything else.
class Screen {
  public:
    Screen(std::uint32_t width, std::uint32_t height)
        : pixels_(static_cast<std::size_t>(width) * height), painter_(width, height, 8, pixels_.data(), 0) {}

    Engine::Painter& painter() { return painter_; }

    /// Draws a widget over its own rectangle, as its page would.
    void draw(Engine::Widget& widget) {
        widget.applyStyle(painter_);
        widget.draw(painter_, widget.rectangle());
    }

    std::string picture() const {
        std::string result;
        for (std::size_t i = 0; i < pixels_.size(); ++i) {
            if (i % painter_.width() == 0) result += '\n';
            result += symbol(pixels_[i]);
        }
        return result;
    }

  private:
    static char symbol(Engine::Color color) {
        switch (color & 0xFFFFFF) {
            case 0xFFFFFF: return '#';
            case 0xFF0000: return 'r';
            case 0x0000FF: return 'b';
            case 0: return color == 0 ? ' ' : '.';
            default: return '?';
        }
    }

    std::vector<unsigned int> pixels_;
    Engine::Framebuffer<unsigned int> painter_;
};

}  // namespace TextTest
