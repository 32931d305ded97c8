#pragma once

#include <cstdint>

namespace Engine {

/// 0xAARRGGBB: alpha 0xff is opaque, 0x00 invisible. Colours pass through the engine unconverted.
using Color = std::uint32_t;

}  // namespace Engine
