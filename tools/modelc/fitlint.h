#pragma once

#include <vector>

#include "tools/modelc/lint.h"

namespace Modelc {

/// Measures, with the real fonts, every text in every language in each label that can show it: texts of the tables,
/// what rules choose among, and the names of an enum variable's values. A label that says  fit: wanted  is left out,
/// and so are values that only the running program knows.
std::vector<LintFinding> lintTextFit(const Names& names, const Explanation& explanation);

}  // namespace Modelc
