#pragma once

#include <filesystem>
#include <string>

namespace Unit {

/// The folder where the server keeps the unit's files; made when missing.
std::filesystem::path homeFolder();
/// How messages call this unit.
std::string unitName();

}  // namespace Unit
