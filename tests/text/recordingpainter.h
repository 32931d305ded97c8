#pragma once

#include <string>
#include <vector>

#include "embedded-gui-engine/painter.h"

namespace TextTest {

/// Notes what is drawn instead of drawing it.
class RecordingPainter : public Engine::Painter {
  public:
    using Rect = Engine::Rect;
    using Image = Engine::Image;
    using Color = Engine::Color;

    struct Call {
        char kind;  ///< 'g' image or glyph, 'h' halo, 'f' fill, 's' scaled
        std::uint32_t key;
        int srcX, srcY;
        Rect place;
        Color color;  ///< background of fills and halos, else foreground
    };
    std::vector<Call> calls;

    /// The characters drawn, with their x: "a0 b5".
    std::string glyphs() const {
        std::string result;
        for (const Call& call : calls) {
            if (!result.empty()) result += ' ';
            result += static_cast<char>(call.key) + std::to_string(call.place.x);
        }
        return result;
    }

    Painter* clone() const override { return nullptr; }
    bool supportsDrawing() const override { return true; }
    void beginPaint() override {}
    void endPaint() override {}
    void reserved6() override {}
    void reserved7() override {}
    void drawRingSector(Engine::RingSector&, int, int, int, int) override {}
    void alignRect(Rect&, const Rect&) const override {}
    void drawImage(const Image&, int srcX, int srcY, Rect dst, std::uint32_t key) override {
        calls.push_back({'g', key, srcX, srcY, dst, foreground_});
    }
    void copyImage(const Image&, int, int, Rect) override {}
    void drawImageScaled(const Image&, Rect src, Rect dst) override {
        calls.push_back({'s', 0, src.x, src.y, dst, foreground_});
    }
    void drawMaskHalo(const Image&, int srcX, int srcY, Rect dst, int) override {
        calls.push_back({'h', 0, srcX, srcY, dst, background_});
    }
    void fill(Rect rect) override { calls.push_back({'f', 0, 0, 0, rect, background_}); }
    void clear() override {}
    bool erase(Rect) override { return false; }
    void setPalette(const Color*, int) override {}
    int logicalWidth() const override { return 240; }
    int logicalHeight() const override { return 400; }
    bool setRotationDegrees(int) override { return false; }
    std::uint32_t rotationIndex() const override { return 0; }
    std::uint32_t sampleBits() const override { return 8; }
    Engine::Surface* createSurface(std::uint32_t, std::uint32_t) const override { return nullptr; }
    void describe(Image&) const override {}
    bool isGlyphCached(std::uint32_t) const override { return false; }
    void setClip(Rect) override {}
    void resetClip() override {}
    void setColors(Color, Color) override {}
    void reserved29() override {}
    void fillRect(Rect, bool) override {}
};

}  // namespace TextTest
