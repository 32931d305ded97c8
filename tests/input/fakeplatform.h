// The few calls of the platform that input devices need, over queues of records that a test fills.
#pragma once

#include <deque>
#include <map>
#include <string>

#include "apps/common/event/eventhandling.h"

namespace FakePlatform {

using Record = EventHandling::input_event;

/// Records that wait, by the device's path. A path that is missing here cannot be opened.
inline std::map<std::string, std::deque<Record>> devices;
/// Everything that was logged.
inline std::string log;

}  // namespace FakePlatform
