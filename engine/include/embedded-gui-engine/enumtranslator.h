#pragma once

#include "embedded-gui-engine/enumvariable.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/textforid.h"

namespace Engine {

/// The text of an enum's present value in the current language. Nothing is kept, so a change of language shows at the
/// next reading.
template <typename Enum>
class Translator : public ValueProvider<const char*> {
  public:
    /// Without a variable every reading gives ":-(" and is logged.
    constexpr explicit Translator(const Enum* variable) : variable_(variable) {}

    const char* name() const override { return "Translator"; }
    /// "?" for a negative value, which stands for not set or not available.
    const char* value() const override {
        if (variable_ == nullptr) {
            engineLog(0, __FILE_NAME__, __LINE__, "No Variable set in Translator");
            return ":-(";
        }
        const int current = variable_->value();
        return current < 0 ? "?" : textForId(variable_->textKey(current));
    }

  private:
    const Enum* variable_;
};

}  // namespace Engine
