#pragma once

#include <string>

#include "unit/ctl/supervisor.h"

namespace Unit {

/// Starts a unit that goes on in the background. Throws Problem with the reason when it does not come up.
void startInBackground(const UnitOptions& options);

/// Runs a unit, opens its panel in a browser where a desktop is at hand, and goes on until a signal or `unitctl stop`
/// ends it, and tells on stdout what happens.
void runInForeground(const UnitOptions& options);

/// Runs a unit in lockstep until its first page stands still, and writes what it shows as a PNG file.
void shootFirstPage(UnitOptions options, const std::string& file);

/// Writes what the driver's display shows. Throws Problem.
void writePicture(const Platform::Virtual::Driver& driver, const std::string& file);

}  // namespace Unit
