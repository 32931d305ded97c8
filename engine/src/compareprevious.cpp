#include "embedded-gui-engine/compareprevious.h"

#include <bit>
#include <utility>

namespace Engine {

template <typename T>
bool ComparePrevious<T>::evaluate() {
    if (provider_ == nullptr) return false;
    const T current = provider_->value();
    const T previous = std::exchange(previous_, current);
    if (!std::exchange(initialised_, true)) return false;
    if (!useThreshold_) return previous != current;
    // Wide enough for the difference of any two values.
    const auto rise = static_cast<std::int64_t>(current) - static_cast<std::int64_t>(previous);
    if (threshold_ == 0) return true;
    return threshold_ > 0 ? rise >= threshold_ : rise <= threshold_;
}

template class ComparePrevious<bool>;
template class ComparePrevious<int>;

std::uint32_t ComparePrevious<const char*>::hash(const char* text) {
    std::uint32_t hash = 0;
    for (; text != nullptr && *text != '\0'; ++text) hash = static_cast<unsigned char>(*text) ^ std::rotl(hash, 5);
    return hash;
}

bool ComparePrevious<const char*>::evaluate() {
    if (provider_ == nullptr) return false;
    const std::uint32_t current = hash(provider_->value());
    const std::uint32_t previous = std::exchange(previousHash_, current);
    return std::exchange(initialised_, true) && previous != current;
}

}  // namespace Engine
