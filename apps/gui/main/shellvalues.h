#pragma once

#include <array>

#include "apps/gui/main/assignmentflags.h"
#include "apps/gui/main/axiscolumns.h"
#include "apps/gui/main/motorsummary.h"

/// What the shell's rules are about, read from the memory areas at each call.
namespace ShellValues {

Assignments assignments();
Rows rows();
UnitAbilities abilities();
std::array<MotorState, 4> motors();

/// Where the axes stand now, and where they should by the assignments.
AxisColumns columns();
AxisColumns wantedColumns();

}  // namespace ShellValues
