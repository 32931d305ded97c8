#pragma once

#include <cstdint>
#include <span>

namespace Engine {
class Widget;
}

/// The lines and figures of one kind of mark in the preview of a lens scale. Empty spans and a null frame are allowed:
/// then nothing is moved.
struct ScaleMarks {
    const Engine::Widget* frame = nullptr;  ///< what lengths and places are a share of
    std::span<Engine::Widget* const> lines;
    std::span<Engine::Widget* const> figures;

    // Each takes a setting and moves the widgets, which mark themselves for redraw when something changes.
    void setLineLength(float percent) const;
    void setLineThickness(float millimetres) const;
    void setFigureX(float percent) const;
    void setFigureY(float percent) const;
};

/// The arithmetic of it, in pixels, single precision, truncated. Whatever does not fit a coordinate, NaN included, is
/// cut to what does.
namespace ScaleMark {

/// `percent` of the frame's width.
std::int16_t length(float percent, int frameWidth);
/// -100 is the frame's height above its top, 100 its top, 200 half its height below the top.
std::int16_t figureY(float percent, int frameHeight);
/// Six pixels a millimetre, at least one.
std::int16_t thickness(float millimetres);
/// Moves a line of that thickness so that its middle stays.
std::int16_t offset(float millimetres);

}  // namespace ScaleMark
