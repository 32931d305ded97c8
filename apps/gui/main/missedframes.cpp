#include "apps/gui/main/missedframes.h"

int missedFrames(std::int64_t passNanoseconds) {
    constexpr std::int64_t tolerated = 20'000'000;
    if (passNanoseconds <= tolerated) return 0;
    return static_cast<int>(0.5F + static_cast<float>(passNanoseconds) / 1e9F * 60.0F) - 1;
}
