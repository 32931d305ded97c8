#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/textreferencemodifier.h"

namespace Engine {

class Label;

struct RecordModifierParams {
    Observer* refresher = nullptr;         ///< updated first; may be null
    std::span<Label* const> labels = {};   ///< one a record; null entries are skipped
    std::span<const TextId> textIds = {};  ///< formats by message index
};

/// What InfoModifier and WarningsModifier share: rendering one record into one label.
class RecordModifier : public TextReferenceModifier {
  protected:
    static constexpr int ArgumentCount = 4;  ///< 32-bit words

    constexpr explicit RecordModifier(const RecordModifierParams& params)
        : refresher_(params.refresher),
          labels_(params.labels.data()),
          textIds_(params.textIds.data()),
          labelCount_(static_cast<std::int32_t>(params.labels.size())),
          textIdCount_(static_cast<std::int32_t>(params.textIds.size())) {}
    ~RecordModifier() = default;

    void refresh() {
        if (refresher_ != nullptr) refresher_->update();
    }
    /// Records that have a label. The live count comes from outside, so it is held within the table; a table of shorter
    /// records has none.
    template <typename Array>
    int shownCount(const Array& source, unsigned int recordSize) const {
        if (source.address() == nullptr || source.width() < recordSize) return 0;
        const unsigned int live = std::min<unsigned int>(source.rowDimension(), source.rowSize());
        return static_cast<int>(std::min(live, static_cast<unsigned int>(labelCount_)));
    }
    /// Gives label `index` the text of `message`, "UNDEFINED" when there is none, with ArgumentCount words at
    /// `arguments`.
    void show(int index, std::int32_t message, const std::byte* arguments);

  private:
    Observer* refresher_;
    Label* const* labels_;
    const TextId* textIds_;
    std::int32_t labelCount_;
    std::int32_t textIdCount_;
};

}  // namespace Engine
