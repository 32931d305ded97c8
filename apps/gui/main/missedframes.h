#pragma once

#include <cstdint>

/// Frames of a 60 Hz display that a pass of this length, in nanoseconds, let go by: none up to 20 ms.
int missedFrames(std::int64_t passNanoseconds);
