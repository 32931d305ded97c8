#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/condition.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

class EnumVariable;
class Page;
template <typename T>
class ScalarVariable;

/// A branch of a conditional value. An entry with a null in it is never chosen.
template <typename T>
struct ConditionalEntry {
    Condition* condition = nullptr;
    const ValueProvider<T>* value = nullptr;
};

/// The value of the first entry whose condition is true. Without one it is the zero of T: transparent black, false,
/// a null pointer. Conditions behind the chosen entry are not evaluated, which matters to those that remember.
template <typename T>
class ConditionalValue : public ValueProvider<T> {
  public:
    using Entry = ConditionalEntry<T>;

    /// The array is not copied.
    constexpr explicit ConditionalValue(std::span<const Entry> entries)
        : entries_(entries.data()), count_(static_cast<std::int32_t>(entries.size())) {}

    const char* name() const override { return "ConditionalValue"; }
    T value() const override {
        for (const Entry& entry : std::span(entries_, static_cast<std::size_t>(count_))) {
            if (entry.condition != nullptr && entry.condition->evaluate() && entry.value != nullptr) {
                return entry.value->value();
            }
        }
        return T{};
    }

  private:
    const Entry* entries_;
    std::int32_t count_;
};

extern template class ConditionalValue<bool>;
extern template class ConditionalValue<int>;
extern template class ConditionalValue<float>;
extern template class ConditionalValue<const char*>;
extern template class ConditionalValue<Color>;
extern template class ConditionalValue<Painter::Align>;
extern template class ConditionalValue<TextId>;
extern template class ConditionalValue<const Image*>;
extern template class ConditionalValue<Font*>;
extern template class ConditionalValue<Page*>;
extern template class ConditionalValue<EnumVariable*>;
extern template class ConditionalValue<ScalarVariable<int>*>;
extern template class ConditionalValue<ScalarVariable<float>*>;

}  // namespace Engine
