#include "apps/gui/main/homelayout.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/painter.h"

namespace {

using Align = Engine::Painter::Align;

constexpr int columnWidth = 80;
constexpr int wholeRow = 240;
constexpr int besideMainScale = 172;
constexpr int besideSideScale = 196;

int textWidth(Engine::Painter& painter, const Engine::Label& label) {
    painter.setFont(label.currentFont());
    painter.setWrap(label.wraps());
    int width = 0;
    painter.measureText(label.text(), label.rectangle(), &width, nullptr, -1);
    return width;
}

std::int16_t pixels(int value) {
    return static_cast<std::int16_t>(std::clamp(value, INT16_MIN, INT16_MAX));
}

void fitFrame(Engine::Painter& painter, const Engine::Label& label, Engine::Widget& frame) {
    frame.setWidth(pixels(textWidth(painter, label) + 2 * (label.x() - frame.x()) + 1));
}

int widestShown(std::span<Engine::Widget* const> frames) {
    int widest = 0;
    for (const Engine::Widget* frame : frames)
        if (frame->isEnabledInTree()) widest = std::max<int>(widest, frame->width());
    return widest;
}

Align alignOf(int column, Align elsewhere) {
    if (column == AxisColumns::left) return Align::Start;
    return column == AxisColumns::right ? Align::End : elsewhere;
}

struct Places {
    int label;
    int frames;
};

Places placesIn(int column, int text, int labelWidth, int frames) {
    if (column == AxisColumns::left) return {0, text};
    if (column == AxisColumns::right) return {columnWidth - labelWidth - frames, columnWidth - frames};
    const int margin = (columnWidth - text - frames) / 2;
    return {margin, text + margin};
}

void place(Engine::Painter& painter, const AxisLabel& axis, int column, Align elsewhere) {
    if (axis.label == nullptr || !axis.label->isEnabledInTree()) return;
    Engine::Label& label = *axis.label;
    const int text = textWidth(painter, label) + 2 * label.padding();
    const Places places = placesIn(column, text, label.width(), widestShown(axis.frames));
    const Align align = alignOf(column, elsewhere);
    // Centred in its own width a text would stand half of what is left beside its place.
    const int spare = align == Align::Centre ? (label.width() - text) / 2 : 0;
    label.setHorizontalAlign(align);
    label.setX(pixels(places.label - spare));
    for (Engine::Widget* frame : axis.frames) frame->setX(pixels(places.frames));
}

}  // namespace

void HomeLayout::recompute(Rows rows, const AxisColumns& columns) {
    const bool besideSide = std::ranges::any_of(std::array{columns.focus, columns.iris, columns.zoom},
                                                [](int column) { return column == AxisColumns::left; });
    room_ = rows == Rows::Single ? wholeRow : besideSide ? besideSideScale : besideMainScale;
    for (Engine::Label* row : widgets_.rows)
        if (row != nullptr) row->setWidth(pixels(std::max(0, room_ - row->x())));
}

void HomeLayout::fitFrames(Engine::Painter& painter) const {
    for (const Engine::Label* row : widgets_.rows)
        if (row != nullptr && widgets_.rowFrame != nullptr && row->isEnabledInTree())
            fitFrame(painter, *row, *widgets_.rowFrame);
    if (widgets_.title != nullptr && widgets_.titleFrame != nullptr)
        fitFrame(painter, *widgets_.title, *widgets_.titleFrame);
}

void HomeLayout::placeAxes(Engine::Painter& painter, const AxisColumns& columns) const {
    const std::array at = {columns.focus, columns.iris, columns.zoom};
    for (std::size_t i = 0; i < at.size(); ++i) place(painter, widgets_.axes[i], at[i], Align::Start);
    for (std::size_t i = 0; i < at.size(); ++i) place(painter, widgets_.softKeys[i], at[i], Align::Centre);
}
