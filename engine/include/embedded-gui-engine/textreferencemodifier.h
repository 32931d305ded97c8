#pragma once

#include "embedded-gui-engine/observer.h"

namespace Engine {

/// Base of the modifiers that compose texts from a referenced text.
class TextReferenceModifier : public Observer {
  protected:
    constexpr explicit TextReferenceModifier(const char* text = nullptr) : text_(text) {}
    ~TextReferenceModifier() = default;

    const char* text_;  ///< the text that was looked up last; may be null, not owned
};

}  // namespace Engine
