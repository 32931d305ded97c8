#pragma once

#include <array>

/// Turns the joystick's deflection into events that repeat: slowly near the centre, fast at the end of the travel.
class Joystick {
  public:
    enum Direction : int { Up, Down, Left, Right };

    struct Reading {
        float x = 0;  ///< -1 left to 1 right
        float y = 0;  ///< -1 down to 1 up
        bool fastX = false;
        int scrollSpeed = 1;  ///< 1 to 10; beyond them the nearer one counts
    };

    /// Whoever gets the events: `first` for the first of a run of its direction.
    class Listener {
      public:
        virtual void joystickPressed(Direction direction, bool first) = 0;
        /// The stick came back to the centre after more than one event.
        virtual void joystickReleased(Direction direction, int events) = 0;

      protected:
        ~Listener() = default;
    };

    /// A stick that is held when this begins, as at the start of the program, is ignored until it has been in the
    /// centre.
    void block() { blocked_ = true; }
    void step(const Reading& reading, Listener& listener);

  private:
    void release(Listener& listener);
    void feed(float& accumulator, float rate, Direction negative, Direction positive, float back, Listener& listener);

    std::array<int, 4> counters_{};
    float accumulatorX_ = 0;
    float accumulatorY_ = 0;
    bool blocked_ = true;
};
