#pragma once

#include <filesystem>

#include "tools/modelc/lowered.h"

namespace Modelc {

/// Writes the model as C++ into `folder`: a header and a source a unit, observers.cpp, model.cpp and model.h. A file
/// whose contents did not change keeps its time, so that only what changed is compiled again; files of units that are
/// gone are removed. Answers the names of all sources; throws std::runtime_error when a file cannot be written.
std::vector<std::string> emit(const Lowered& lowered, const std::filesystem::path& folder);

/// The lowered form as text, for people.
void print(const Lowered& lowered, std::ostream& out);

}  // namespace Modelc
