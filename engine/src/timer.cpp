#include "embedded-gui-engine/timer.h"

#include "embedded-gui-engine/runactions.h"

namespace Engine {

void Timer::start() {
    remaining_ = interval_;
    repeatsLeft_ = repeat_;
}

void Timer::advance(int elapsedMs) {
    if (remaining_ <= 0) return;
    remaining_ -= elapsedMs;
    if (remaining_ > 0) return;
    remaining_ = 0;
    runActions({tickActions_, tickActionCount_});
    if (repeat_ < 0)
        remaining_ = interval_;
    else if (repeat_ > 0)
        endRound();
}

void Timer::endRound() {
    if (--repeatsLeft_ != 0)
        remaining_ = interval_;
    else
        runActions({finishActions_, finishActionCount_});
}

}  // namespace Engine
