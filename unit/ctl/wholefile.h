#pragma once

#include <string>

namespace Unit {

/// All bytes of a file; empty when it cannot be read.
std::string wholeFile(const std::string& file);

}  // namespace Unit
