#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Platform::Virtual {

/// A 64-bit fingerprint of bytes, made for speed: equal bytes give equal values on every little-endian machine, and no
/// malice is defended against. Four lanes of eight bytes, each multiplied and turned, are folded at the end.
inline std::uint64_t fingerprint(const void* data, std::size_t size, std::uint64_t seed = 0) {
    constexpr std::uint64_t odd1 = 0x9e3779b97f4a7c15, odd2 = 0xc2b2ae3d27d4eb4f;
    const auto mix = [](std::uint64_t lane, std::uint64_t word) { return std::rotl(lane ^ (word * odd1), 29) * odd2; };
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint64_t lanes[4] = {seed, seed + odd1, seed + odd2, seed ^ size};
    std::size_t at = 0;
    for (; at + sizeof lanes <= size; at += sizeof lanes) {
        std::uint64_t words[4];
        std::memcpy(words, bytes + at, sizeof words);
        for (int i = 0; i < 4; ++i) lanes[i] = mix(lanes[i], words[i]);
    }
    for (; at < size; ++at) lanes[at % 4] = mix(lanes[at % 4], bytes[at]);
    std::uint64_t result = 0;
    for (const std::uint64_t lane : lanes) result = mix(result ^ (result >> 31), lane);
    return result ^ (result >> 33);
}

}  // namespace Platform::Virtual
