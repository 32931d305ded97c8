#include "unit/server/modules/lengths.h"

#include <cmath>
#include <cstdio>

namespace Unit {

FeetAndInches feetAndInches(double metres) {
    const double feet = metres / metresPerFoot;
    return {static_cast<std::int32_t>(feet), static_cast<float>((feet - std::floor(feet)) * 12)};
}

std::string lengthText(double metres, LengthStyle style) {
    char text[40];
    const long inches = std::lround(std::abs(metres) / metresPerFoot * 12);
    if (style == LengthStyle::Metres)
        std::snprintf(text, sizeof text, "%.2f m", metres);
    else
        std::snprintf(text, sizeof text, "%s%ld' %ld\"", metres < 0 ? "-" : "", inches / 12, inches % 12);
    return text;
}

}  // namespace Unit
