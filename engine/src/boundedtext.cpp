#include "embedded-gui-engine/boundedtext.h"

#include <algorithm>

namespace Engine {
namespace {

/// The longest start of `text` within `limit` bytes that does not cut a character in two.
std::string_view cut(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return text;
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0U) == 0x80) --limit;
    return text.substr(0, limit);
}

}  // namespace

bool BoundedText::assign(std::string_view text) {
    if (capacity_ == 0) return false;
    const std::string_view fitting = cut(text, capacity_ - 1U);
    if (fitting == view()) return false;
    std::copy(fitting.begin(), fitting.end(), data_);
    data_[fitting.size()] = '\0';
    length_ = static_cast<std::uint16_t>(fitting.size());
    return true;
}

}  // namespace Engine
