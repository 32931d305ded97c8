#include "embedded-gui-engine/recordmodifier.h"

#include <array>
#include <cstring>

#include "embedded-gui-engine/formatmixed.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/textforid.h"

namespace Engine {

void RecordModifier::show(int index, std::int32_t message, const std::byte* arguments) {
    Label* label = labels_[index];
    if (label == nullptr) return;
    std::array<std::uint32_t, ArgumentCount> words;
    std::memcpy(words.data(), arguments, sizeof words);
    text_ = message >= 0 && message < textIdCount_ ? textForId(textIds_[message]) : "UNDEFINED";
    char buffer[256];
    formatMixed(buffer, sizeof buffer, text_, words);
    label->setText(buffer);
}

}  // namespace Engine
