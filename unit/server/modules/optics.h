#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Unit {

/// One line engraved on a ring: where it lies (0 at the near, open or wide end, 1 at the other), what it says.
struct Engraving {
    double position;
    double value;      ///< metres, feet, T-stop or millimetres; infinity for the end of a focus ring
    std::string main;  ///< empty for a line without a number
    std::string sub;
};

using Scale = std::vector<Engraving>;  ///< by position

/// A lens of the virtual unit. Prime lenses have no zoom scale.
struct LensModel {
    const char* name;   ///< as scenes call it
    const char* label;  ///< as the display calls it
    const char* serial;
    double closest;               ///< metres
    double shortest, longest;     ///< focal length in millimetres
    double widestStop, lastStop;  ///< T-stops
    double helix;                 ///< exponent of the focus ring: 1 is a plain thread, less spreads the far end

    bool isZoom() const { return longest > shortest; }

    /// Of a distance in metres on the ring. A thread moves with the reciprocal of the distance.
    double positionOfDistance(double metres) const;
    double distanceAt(double position) const;  ///< metres; infinity at the end
    double positionOfStop(double stop) const;
    double stopAt(double position) const;
    double positionOfFocalLength(double millimetres) const;
    double focalLengthAt(double position) const;

    Scale metres() const;
    Scale feet() const;
    Scale stops() const;
    Scale focalLengths() const;
};

/// The values that rings carry: metres, feet, T-stops, millimetres; rising.
std::span<const double> engravedMetres();
std::span<const double> engravedFeet();
std::span<const double> engravedStops();
std::span<const double> engravedLengths();

/// What a ring says at a value; `feet` in feet, infinity as its sign.
Engraving engravedDistance(double position, double metres);
Engraving engravedImperial(double position, double feet);
Engraving engravedNumber(double position, double value);

/// All lenses that the virtual unit can carry.
const std::vector<LensModel>& lensModels();
/// Null when there is none of that name.
const LensModel* findLens(std::string_view name);

}  // namespace Unit
