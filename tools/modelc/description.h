#pragma once

#include <string>

#include "tools/modelc/lower.h"

namespace Modelc {

/// What the model's rules are, as JSON for programs that look into a running unit:
///
///     {"pages": [NAME...], "overlays": [NAME...],
///      "rules": [{"place", "at", "value"}...],
///      "drives": {VARIABLE: [PLACE...]}, "writes": {VARIABLE: [{"place", "at"}...]}, "hears": {PLACE: [EVENT...]}}
///
/// "at" is FILE:LINE. A value is an object with one of the keys  constant (its text), variable, compare ([operator,
/// left, right text]), not, all, any, choose ([[condition or null, value]...]), rule (its name, with "at" and "value"),
/// enumText (a variable), format (with "value"), fill (with "parts").
std::string describeModel(const ModelTree& model, const Lowered& lowered, const Names& names,
                          const Explanation& explanation);

}  // namespace Modelc
