#pragma once

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"
#include "tools/modelc/model.h"

namespace Modelc {

/// Turns sources into concrete pages and containers: templates become plain objects, repetitions their bodies, the
/// decided branch of each `if` its members. A template that reaches itself is refused at a depth of 32, a model of
/// more than a million members altogether.
ModelTree expand(const std::vector<SourceTree>& sources, Diagnostics& diagnostics);

}  // namespace Modelc
