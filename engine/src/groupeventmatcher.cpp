#include "embedded-gui-engine/groupeventmatcher.h"

#include <algorithm>

namespace Engine {

bool GroupEventMatcher::matches(EventId eventId) const {
    return std::find(eventIds_, eventIds_ + count_, eventId) != eventIds_ + count_;
}

}  // namespace Engine
