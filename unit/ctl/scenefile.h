#pragma once

#include <string>
#include <vector>

namespace Unit {

/// The absolute path of a scene: a file, or the bare name of one that comes with the unit ("zoom-feet"). Throws
/// Problem.
std::string findScene(const std::string& name);
/// The bare names of the scenes that come with the unit, sorted.
std::vector<std::string> sceneNames();

}  // namespace Unit
