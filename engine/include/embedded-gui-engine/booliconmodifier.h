#pragma once

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

class Icon;

/// Shows one of two images. Unlike other modifiers it repaints the icon at every update.
class BoolIconModifier : public Observer {
  public:
    /// The icon must not be null; the images may. Without a provider nothing is ever pushed.
    constexpr BoolIconModifier(Icon* icon, const Image* imageTrue, const Image* imageFalse,
                               const ValueProvider<bool>* provider)
        : icon_(icon), imageTrue_(imageTrue), imageFalse_(imageFalse), provider_(provider) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    Icon* icon_;
    const Image* imageTrue_;
    const Image* imageFalse_;
    const ValueProvider<bool>* provider_;
};

}  // namespace Engine
