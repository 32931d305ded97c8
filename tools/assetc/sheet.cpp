#include "tools/assetc/sheet.h"

#include <algorithm>

#include "tools/assetc/canvas.h"

namespace {

constexpr std::uint32_t ground = 0x000000, ink = 0xFFFFFF, quiet = 0xA5A5A5, tile = 0x1C1C1C;
constexpr int margin = 10, enlarged = 4, sheetWidth = 1000;

constexpr const char* samples[] = {"Hg 0123456789 1.83 5′6″", "Größe ÄÖÜ Ñandú ¿Qué? Čšž Ωμ Жя",
                                   "马达校准 焦点 光圈 变焦 ★ ✓ ← → ⌫ °"};

void drawFonts(const std::vector<FontData>& fonts, const std::filesystem::path& path) {
    int height = margin;
    for (const FontData& font : fonts) height += 3 * font.spec.lineHeight + fonts.back().spec.lineHeight + margin;
    Canvas canvas(sheetWidth, height, ground);
    int y = margin;
    for (const FontData& font : fonts) {
        const std::string caption =
            "font " + std::to_string(font.spec.index) + ": line " + std::to_string(font.spec.lineHeight) + ", digit " +
            std::to_string(font.spec.digitWidth) + ", " + std::to_string(font.glyphCount()) + " glyphs, atlas " +
            std::to_string(font.atlasWidth) + " x " + std::to_string(font.atlasHeight);
        canvas.draw(fonts.back(), caption, margin, y, quiet);
        y += fonts.back().spec.lineHeight;
        for (const char* sample : samples) {
            canvas.draw(font, sample, margin, y, ink);
            y += font.spec.lineHeight;
        }
        y += margin;
    }
    canvas.writePng(path);
}

struct Flow {
    int x = margin, y = margin, rowHeight = 0;

    void place(int width, int height) {
        if (x + width > sheetWidth - margin) x = margin, y += rowHeight + margin, rowHeight = 0;
        rowHeight = std::max(rowHeight, height);
    }
};

void drawImages(const std::vector<ImageData>& images, const FontData& captionFont, const std::filesystem::path& path) {
    const int caption = captionFont.spec.lineHeight;
    const auto visit = [&](const auto& draw) {
        Flow flow;
        for (std::size_t i = 0; i < images.size(); ++i) {
            const int width = std::max(images[i].width * enlarged, 88) + margin;
            flow.place(width, images[i].height * (enlarged + 1) + 4 + 2 * caption);
            draw(images[i], i, flow);
            flow.x += width;
        }
        return flow.y + flow.rowHeight + margin;
    };
    Canvas canvas(sheetWidth, visit([](const ImageData&, std::size_t, const Flow&) {}), ground);
    visit([&](const ImageData& image, std::size_t index, const Flow& flow) {
        int y = flow.y;
        canvas.fill(flow.x, y, image.width * enlarged, image.height * enlarged, tile);
        canvas.draw(image, flow.x, y, enlarged, ink);
        y += image.height * enlarged + 4;
        canvas.draw(image, flow.x, y, 1, ink);
        y += image.height;
        canvas.draw(captionFont, std::to_string(index) + " " + image.name, flow.x, y, ink);
        canvas.draw(captionFont, std::to_string(image.width) + " x " + std::to_string(image.height), flow.x,
                    y + caption, quiet);
    });
    canvas.writePng(path);
}

}  // namespace

void writeSheets(const std::filesystem::path& folder, const std::vector<FontData>& fonts,
                 const std::vector<ImageData>& images) {
    drawFonts(fonts, folder / "fonts.png");
    drawImages(images, fonts.back(), folder / "icons.png");
}
