#pragma once

#include <string>

#include "tools/modelc/value.h"

namespace Modelc {

/// The text as a C++ string literal; every byte that is not plain ASCII is escaped.
std::string cppString(const std::string& text);
/// The nearest single precision value as a C++ literal.
std::string cppFloat(double value);

/// What is wrong with a printf format for one value of `type` (Int, Float, String), empty when nothing is. A format
/// without a conversion is right: it shows itself.
std::string formatFault(const std::string& format, Type type);

}  // namespace Modelc
