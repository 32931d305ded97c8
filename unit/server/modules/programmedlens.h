#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "unit/server/modules/optics.h"

namespace Unit {

/// A lens whose rings were measured by hand: what is engraved, and where.
struct ProgrammedLens {
    /// One engraved value: metres, T-stop or millimetres.
    struct Mark {
        double position;
        double value;
        bool number = true;  ///< false for a line alone
    };
    /// By position, rising in both.
    using Marks = std::vector<Mark>;

    std::string label, brand, serial;
    double focalLength = 50;  ///< millimetres, of a lens without zoom marks
    Marks focus, iris, zoom;
    bool imperial = false;  ///< the focus ring is engraved in feet

    double closest() const { return focus.empty() ? 0 : focus.front().value; }
    bool isZoom() const { return zoom.size() > 1; }
    double distanceAt(double position) const;  ///< metres
    double positionOfDistance(double metres) const;
    double stopAt(double position) const;
    double focalLengthAt(double position) const;
    Scale metres() const;
    Scale feet() const;
    Scale stops() const;
    Scale focalLengths() const;

    bool save(const std::filesystem::path& file) const;
    /// Nothing when the file is not one of these, or its marks do not rise.
    static std::optional<ProgrammedLens> load(const std::filesystem::path& file);
};

/// The lens that a file names; null when it names none that is known.
const LensModel* knownLensIn(const std::filesystem::path& file);

}  // namespace Unit
