#pragma once

#include <string>

#include "unit/server/modules/ringfile.h"

namespace Unit {

/// How the drawing of a ring is laid out; lengths and places in parts of a hundred of the ring's width.
struct RingDrawingStyle {
    double majorLength, majorThickness, minorLength, minorThickness;
    double textX, textY;
};

/// A ring as a drawing to print, in SVG: the ring unrolled, a line with a number for each mark and short lines between.
std::string drawRing(const RingFile& ring, const RingDrawingStyle& style);
/// The marks between the numbered ones that the drawing shows.
std::vector<RingFile::Mark> minorMarks(const RingFile& ring);

}  // namespace Unit
