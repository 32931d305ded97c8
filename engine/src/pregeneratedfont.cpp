#include "embedded-gui-engine/pregeneratedfont.h"

#include <algorithm>

namespace Engine {

namespace {

/// A binary search with halving steps. Three probes are left once the step is 1, so that the halves of an odd count
/// are reached and the search ends in any table.
std::uint32_t searchCode(const std::uint16_t* codes, std::uint32_t count, std::uint32_t code) {
    const auto last = static_cast<std::int32_t>(count) - 1;
    auto index = static_cast<std::int32_t>(count / 2);
    std::int32_t step = index;
    int probesLeft = 3;
    while (true) {
        index = std::clamp(index, 0, last);
        if (codes[index] == code) return static_cast<std::uint32_t>(index);
        if (step > 1) {
            step = (step + 1) / 2;
        } else if (--probesLeft < 0) {
            return 0;
        }
        index += codes[index] < code ? step : -step;
    }
}

}  // namespace

std::uint32_t PreGeneratedFont::searchGlyph(std::uint32_t code) const {
    if (code >= data_->codeLimit) return 0;
    if (data_->glyphCount > 1 && data_->codeTable[1] == code) return 1;  // the line feed, as a rule
    return searchCode(data_->codeTable, data_->glyphCount, code);
}

}  // namespace Engine
