#include "apps/gui/main/markercolors.h"

#include <array>

#include "embedded-gui-engine/widget.h"

namespace {

constexpr std::array<Engine::Color, 10> colors = {0xffffffff, 0xffff4c42, 0xfff79f14, 0xffffe04c, 0xff00b05b,
                                                  0xff00d0c0, 0xff50b4ff, 0xff3c6cff, 0xffa878ff, 0xffff78c8};

}  // namespace

Engine::Color markerColor(int setting, std::size_t marker) {
    const bool one = setting >= 1 && setting <= static_cast<int>(colors.size());
    return colors[one ? static_cast<std::size_t>(setting - 1) : marker % colors.size()];
}

void paintMarkers(std::span<Engine::Widget* const> pieces, int setting, std::size_t first) {
    for (std::size_t i = 0; i < pieces.size(); ++i)
        pieces[i]->setForeground(markerColor(setting, first + i % markersOfAxis));
}
