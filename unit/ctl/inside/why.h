#pragma once

#include <string>

#include "platform/virtual/instance.h"

namespace Unit {

/// Prints the rules that decide a widget, or one property of it, with the values in force in the running unit. Throws
/// Problem when nothing is called so.
void whyVerb(const Platform::Virtual::Place& place, const std::string& name, bool asJson);

/// Prints a variable's value and place, all that it drives and all in the model that writes it. Throws Problem.
void whoVerb(const Platform::Virtual::Place& place, const std::string& name, bool asJson);

}  // namespace Unit
