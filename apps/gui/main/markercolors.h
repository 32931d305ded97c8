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

/// A lens axis has so many markers.
constexpr std::size_t markersOfAxis = 8;

/// Gives the markers of an axis their colours. `pieces` holds them in order, once for each place where they are drawn;
/// `first` is the number of the axis's first marker.
void paintMarkers(std::span<Engine::Widget* const> pieces, int setting, std::size_t first = 0);
