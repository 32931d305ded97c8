#pragma once

#include <cstdint>

/// The ripple of the screen saver: a ring that grows and shrinks around the middle.
class ScreenSaverAnimation {
  public:
    /// The mode in which pictures are shown instead.
    static constexpr int slideshow = 10;

    /// Mode 0 changes its colour with each ripple, 1 to 9 keep that colour. A mode without a colour begins with the
    /// first one.
    void activate(int mode, int speed);

    /// One frame at a time of the steady clock, for a buffer of `width` x `height` pixels. Nothing in the slideshow.
    void draw(std::uint32_t* pixels, int width, int height, std::int64_t steadyMilliseconds);

    int colorIndex() const { return colorIndex_; }

  private:
    float phase(std::int64_t steadyMilliseconds) const;
    void changeColor(float phase);

    int mode_ = 0;
    int speed_ = 0;
    bool risen_ = true;
    int colorIndex_ = 3;
};
