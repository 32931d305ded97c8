#pragma once

#include <cstdint>
#include <vector>

#include "apps/common/event/eventhandling.h"

using Records = std::vector<EventHandling::input_event>;

// Records as the device writes them.
inline EventHandling::input_event absolute(std::uint16_t code, int value) {
    return {0, 0, 3, code, value};
}
inline EventHandling::input_event slot(int value) {
    return absolute(47, value);
}
inline EventHandling::input_event positionX(int value) {
    return absolute(53, value);
}
inline EventHandling::input_event positionY(int value) {
    return absolute(54, value);
}
inline EventHandling::input_event trackingId(int value) {
    return absolute(57, value);
}
inline EventHandling::input_event key(std::uint16_t code, int value) {
    return {0, 0, 1, code, value};
}
inline EventHandling::input_event report() {
    return {0, 0, 0, 0, 0};
}
inline EventHandling::input_event dropped() {
    return {0, 0, 0, 3, 0};
}
