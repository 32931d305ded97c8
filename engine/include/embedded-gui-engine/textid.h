#pragma once

#include <cstdint>

namespace Engine {

/// Key of a text in the language tables; 0 means no text. A type of its own, since it selects template instances.
struct TextId {
    std::uint32_t key = 0;

    friend constexpr bool operator==(TextId, TextId) = default;
};

}  // namespace Engine
