#include "embedded-gui-engine/hundredthsstringprovider.h"

#include <cstdio>

namespace Engine {

void HundredthsStringProvider::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) {
        refuseMissingProvider();
        return;
    }
    char text[TextSize];
    std::snprintf(text, sizeof text, "%.1f", provider_->value() / 100.0);
    finishUnfiltered(text);
}

}  // namespace Engine
