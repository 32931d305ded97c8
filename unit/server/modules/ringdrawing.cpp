#include "unit/server/modules/ringdrawing.h"

#include <algorithm>
#include <cstdio>

namespace Unit {

namespace {

// Millimetres of the unrolled ring.
constexpr double ringLength = 160, ringWidth = 12;
constexpr std::size_t mostMinorMarks = 200;

std::string escaped(const std::string& text) {
    std::string safe;
    for (const char c : text) {
        if (c == '&' || c == '<' || c == '>')
            safe += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            safe += c;
    }
    return safe;
}

std::string line(double x, double length, double thickness) {
    char text[160];
    std::snprintf(text, sizeof text,
                  "<line x1=\"%.3f\" y1=\"0\" x2=\"%.3f\" y2=\"%.3f\" stroke=\"black\" stroke-width=\"%.3f\"/>\n", x, x,
                  length, thickness);
    return text;
}

}  // namespace

std::vector<RingFile::Mark> minorMarks(const RingFile& ring) {
    std::vector<RingFile::Mark> marks;
    for (std::size_t i = 0; i + 1 < ring.marks.size() && marks.size() < mostMinorMarks; ++i) {
        const auto& low = ring.marks[i];
        const auto& high = ring.marks[i + 1];
        marks.push_back({(low.position + high.position) / 2, (low.value + high.value) / 2});
    }
    return marks;
}

std::string drawRing(const RingFile& ring, const RingDrawingStyle& style) {
    char head[200];
    std::snprintf(
        head, sizeof head,
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.0fmm\" height=\"%.0fmm\" viewBox=\"0 0 %.0f %.0f\">\n",
        ringLength, ringWidth, ringLength, ringWidth);
    std::string svg = std::string(head) + "<title>" + escaped(ring.name) + "</title>\n";
    const auto place = [&ring](double position) { return (ring.leftHanded ? 1 - position : position) * ringLength; };
    for (const auto& mark : minorMarks(ring))
        svg += line(place(mark.position), ringWidth * style.minorLength / 100, style.minorThickness);
    for (const auto& mark : ring.marks) {
        svg += line(place(mark.position), ringWidth * style.majorLength / 100, style.majorThickness);
        char at[120];
        std::snprintf(at, sizeof at, "<text x=\"%.3f\" y=\"%.3f\" font-size=\"3\" text-anchor=\"middle\">",
                      place(mark.position) + ringWidth * style.textX / 100, ringWidth * (0.9 + style.textY / 100));
        svg += at + escaped(ring.main(mark) + ring.sub(mark)) + "</text>\n";
    }
    return svg + "</svg>\n";
}

}  // namespace Unit
