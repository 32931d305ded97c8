#include "embedded-gui-engine/booliconmodifier.h"

#include "embedded-gui-engine/icon.h"

namespace Engine {

void BoolIconModifier::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) return;
    icon_->setImage(provider_->value() ? imageTrue_ : imageFalse_);
    icon_->invalidateAll(false);
}

}  // namespace Engine
