#pragma once

#include <cstdint>
#include <vector>

/// A picture that shows at a glance whether a display is right: the outermost pixels (a white frame), geometry (the
/// circle must be round, the grid square), the channels and their order (bars), the tones (an even staircase), single
/// pixels and lines (fields of one-pixel stripes), and motion without tearing (a mark that goes round).
class TestCard {
  public:
    struct Point {
        float x, y;
    };

    /// In pixels, at least 128 each. Draws all that stands still, once.
    TestCard(int width, int height);

    /// Into `pixels`, 0xAARRGGBB, rows from the top without gaps. `turn` is how far the mark has gone round, 0 up to
    /// but not including 1.
    void draw(std::uint32_t* pixels, float turn);

  private:
    void fill(int x, int y, int width, int height, std::uint32_t color);
    void blend(int x, int y, std::uint32_t color, float coverage);
    void grid();
    void frame();
    void bars(int x, int y, int width, int height);
    void staircase(int x, int y, int width, int height);
    void stripes(int x, int y, int size);
    /// Blends `color` where `distance` of a pixel's centre, in pixels and from the picture's centre, is below 0.
    template <typename Distance>
    void shape(std::uint32_t color, Distance distance);
    void mark(float radius, float turn);
    float circleRadius() const;
    Point fromCentre(int x, int y) const;

    int width_;
    int height_;
    std::vector<std::uint32_t> still_;
    std::uint32_t* pixels_;  // what is drawn into just now
};
