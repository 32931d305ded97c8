#pragma once

#include <optional>

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"

namespace Modelc {

/// The value of a condition that must be known while compiling: literals, names compared with names (`none` among
/// them), arithmetic on whole numbers. Anything else is reported and gives nothing.
std::optional<bool> staticCondition(const ExprPtr& expr, Diagnostics& diagnostics);

/// A whole number known while compiling; reports and gives nothing otherwise.
std::optional<std::int64_t> staticNumber(const ExprPtr& expr, Diagnostics& diagnostics);

/// `expr` with arithmetic on numbers carried out; the same node when there is none.
ExprPtr folded(const ExprPtr& expr);

}  // namespace Modelc
