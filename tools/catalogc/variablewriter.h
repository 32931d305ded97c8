#pragma once

#include <filesystem>

#include "tools/catalogc/layout.h"

/// Writes the variables of the program: variables.h with the arrays and a name for each value, and one source an array,
/// all of it constant-initialised.
void writeVariables(const Layout& layout, const std::filesystem::path& folder);
