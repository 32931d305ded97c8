#pragma once

#include <cstddef>
#include <span>

#include "embedded-gui-engine/color.h"

namespace Engine {
class Widget;
}

/// The colour of a lens marker. `setting` 1 to 10 is that colour for all markers, any other value gives each marker,
/// by its place in the list, the next one.
Engine::Color markerColor(int setting, std::size_t marker);

/// Gives each marker its colour.
void paintMarkers(std::span<Engine::Widget* const> markers, int setting);
