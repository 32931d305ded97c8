// The nine parts on a strict painter: each names its source, none may lie outside the board or on another one.
#include "tests/painter/target.h"

using Engine::Image;
using Engine::Rect;

namespace {

/// Shows every part as the digit of its source field, counted along the rows of a 3 by 3 image, corners in capitals A
/// to I. All that a nine-slice does not need fails.
class StrictPainter final : public Engine::Painter {
  public:
    StrictPainter(int width, int height, int corner)
        : board(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), '.')), corner_(corner) {}

    void drawImage(const Image&, int srcX, int srcY, Rect dst, std::uint32_t) override { put('A', srcX, srcY, dst); }
    void drawImageScaled(const Image&, Rect src, Rect dst) override {
        EXPECT_EQ(src.width, corner_);
        EXPECT_EQ(src.height, corner_);
        if (dst.width > 0 && dst.height > 0) put('a', src.x, src.y, dst);
    }

    Picture board;

    Painter* clone() const override { return fail<Painter*>(); }
    bool supportsDrawing() const override { return true; }
    void beginPaint() override {}
    void endPaint() override {}
    void reserved6() override {}
    void reserved7() override {}
    void drawRingSector(Engine::RingSector&, int, int, int, int) override { fail<void>(); }
    void alignRect(Rect&, const Rect&) const override { fail<void>(); }
    void copyImage(const Image&, int, int, Rect) override { fail<void>(); }
    void drawMaskHalo(const Image&, int, int, Rect, int) override { fail<void>(); }
    void fill(Rect) override { fail<void>(); }
    void clear() override { fail<void>(); }
    bool erase(Rect) override { return fail<bool>(); }
    void setPalette(const Engine::Color*, int) override { fail<void>(); }
    int logicalWidth() const override { return static_cast<int>(board[0].size()); }
    int logicalHeight() const override { return static_cast<int>(board.size()); }
    bool setRotationDegrees(int) override { return fail<bool>(); }
    std::uint32_t rotationIndex() const override { return 0; }
    std::uint32_t sampleBits() const override { return 8; }
    Engine::Surface* createSurface(std::uint32_t, std::uint32_t) const override { return fail<Engine::Surface*>(); }
    void describe(Image&) const override { fail<void>(); }
    bool isGlyphCached(std::uint32_t) const override { return false; }
    void setClip(Rect) override {}
    void resetClip() override {}
    void setColors(Engine::Color, Engine::Color) override {}
    void reserved29() override {}
    void fillRect(Rect, bool) override { fail<void>(); }

  private:
    template <typename Result>
    Result fail() const {
        ADD_FAILURE() << "not an operation of a nine-slice";
        return Result();
    }

    void put(char first, int srcX, int srcY, Rect dst) {
        const char letter = static_cast<char>(first + srcY / corner_ * 3 + srcX / corner_);
        for (int y = dst.y; y < dst.y + dst.height; ++y)
            for (int x = dst.x; x < dst.x + dst.width; ++x) {
                const bool inside = x >= 0 && y >= 0 && x < logicalWidth() && y < logicalHeight();
                ASSERT_TRUE(inside) << letter << " is drawn outside at " << x << ", " << y;
                char& place = board[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
                EXPECT_EQ(place, '.') << letter << " is drawn over " << place << " at " << x << ", " << y;
                place = letter;
            }
    }

    int corner_;
};

Image square(unsigned size) {
    return {0, size, size, Image::Mask8, nullptr};
}

}  // namespace

TEST(NineSlice, StretchesEdgesAndCentre) {
    StrictPainter painter(9, 7, 2);
    painter.drawImageNine(square(6), {1, 1, 7, 5});
    EXPECT_EQ(painter.board,
              (Picture{".........", ".AAbbbCC.", ".AAbbbCC.", ".ddeeeff.", ".GGhhhII.", ".GGhhhII.", "........."}));
}

TEST(NineSlice, TakesBothCornersFromTheWidth) {
    StrictPainter painter(4, 3, 1);
    painter.drawImageNine({0, 5, 9, Image::Mask8, nullptr}, {0, 0, 4, 3});
    EXPECT_EQ(painter.board, (Picture{"AbbC", "deef", "GhhI"}));
}

TEST(NineSlice, WithoutRoomForEdgesIsCornersOnly) {
    StrictPainter painter(4, 4, 2);
    painter.drawImageNine(square(6), {0, 0, 4, 4});
    EXPECT_EQ(painter.board, (Picture{"AACC", "AACC", "GGII", "GGII"}));
}
