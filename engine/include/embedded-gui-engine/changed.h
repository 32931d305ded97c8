#pragma once

namespace Engine {

/// Compare, then store: the first step of every setter. Answers whether the value was another one.
template <typename T>
constexpr bool changed(T& field, const T& value) {
    if (field == value) return false;
    field = value;
    return true;
}

}  // namespace Engine
