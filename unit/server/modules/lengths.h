#pragma once

#include <cstdint>
#include <string>

namespace Unit {

constexpr double metresPerFoot = 0.3048;

struct FeetAndInches {
    std::int32_t feet;
    float inches;
};
/// Of a length in metres that is not negative.
FeetAndInches feetAndInches(double metres);

enum class LengthStyle { Metres, Feet };
/// A length in metres as a person writes it: "2.54 m", "8' 4\"".
std::string lengthText(double metres, LengthStyle style);

}  // namespace Unit
