#pragma once

#include "tools/modelc/diagnostics.h"
#include "tools/modelc/model.h"

namespace Modelc {

/// Adds to the container of each edit table the reactions that follow from its rows: on Event_EditConfirmed what was
/// worked on goes back to its source, and at the end of every edit the number returns to 0. The reset is declared
/// first, so that it runs last. Reports numbers and names that stand twice.
void expandEdits(ModelTree& model, Diagnostics& diagnostics);

}  // namespace Modelc
