#pragma once

#include <iosfwd>
#include <string>

#include "tools/modelc/lower.h"

namespace Modelc {

/// Prints the rules of a widget or of one of its properties ("Home_LDD.title.foreground"): what it may become, by
/// which conditions, from which variables, and where that is written. False when there is nothing of this name.
bool printWhy(const Explanation& explanation, const std::string& place, std::ostream& out);

/// Prints what a variable drives and what writes it. False when the model does not use it.
bool printWho(const Explanation& explanation, const Lowered& lowered, const std::string& variable, std::ostream& out);

}  // namespace Modelc
