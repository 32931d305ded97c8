#pragma once

#include "embedded-gui-engine/recordmodifier.h"
#include "embedded-gui-engine/variablebase.h"

namespace Engine {

/// Renders a table of warnings into labels: a record's place in the table is its message, and a row that does not
/// exist at present keeps its label's text. `Array` is as InfoModifier's.
template <typename Array>
class WarningsModifier : public RecordModifier {
  public:
    /// Without a source nothing is ever shown.
    constexpr WarningsModifier(const Array* source, const RecordModifierParams& params)
        : RecordModifier(params), source_(source) {}

    void update(std::intptr_t = 0, std::intptr_t = 0) override {
        refresh();
        if (source_ == nullptr) return;
        const auto* records = static_cast<const std::byte*>(static_cast<const void*>(source_->address()));
        for (int index = 0, count = shownCount(*source_, RecordSize); index < count; ++index) {
            if ((source_->properties(static_cast<unsigned>(index)) & PropertyExists) == 0) continue;
            show(index, index, records + index * RecordSize + ArgumentOffset);
        }
    }

  private:
    // A record: 8 bytes not used here, four 32-bit arguments.
    static constexpr int RecordSize = 24;
    static constexpr int ArgumentOffset = 8;
    static_assert(ArgumentOffset + ArgumentCount * 4 == RecordSize);

    const Array* source_;
};

}  // namespace Engine
