#pragma once

#include <iosfwd>

#include "tools/modelc/lower.h"

namespace Modelc {

/// What the model is made of: objects by class, pages and containers, variables by kind, observers, texts.
void printCensus(const ModelTree& model, const Lowered& lowered, const Names& names, std::ostream& out);

}  // namespace Modelc
