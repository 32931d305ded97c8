#pragma once

#include <cstring>

#include "embedded-gui-engine/recordmodifier.h"

namespace Engine {

/// Renders a table of status records into labels. Labels beyond the live records keep their text. `Array` is the
/// backend's table, whose storage holds the records one behind the other.
template <typename Array>
class InfoModifier : public RecordModifier {
  public:
    /// Without a source nothing is ever shown.
    constexpr InfoModifier(const Array* source, const RecordModifierParams& params)
        : RecordModifier(params), source_(source) {}

    void update(std::intptr_t = 0, std::intptr_t = 0) override {
        refresh();
        if (source_ == nullptr) return;
        const auto* records = static_cast<const std::byte*>(static_cast<const void*>(source_->address()));
        for (int index = 0, count = shownCount(*source_, RecordSize); index < count; ++index) {
            const std::byte* record = records + index * RecordSize;
            std::int32_t message;
            std::memcpy(&message, record, sizeof message);
            show(index, message, record + ArgumentOffset);
        }
    }

  private:
    // A record: i32 message id, 12 bytes not used here, four 32-bit arguments.
    static constexpr int RecordSize = 32;
    static constexpr int ArgumentOffset = 16;
    static_assert(ArgumentOffset + ArgumentCount * 4 == RecordSize);

    const Array* source_;
};

}  // namespace Engine
