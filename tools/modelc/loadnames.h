#pragma once

#include <filesystem>
#include <string>

#include "tools/modelc/names.h"

namespace Modelc {

/// Reads what the product's folder `model` declares: catalogue, texts, icons and fonts. Throws InputError or
/// std::runtime_error with everything that is wrong there.
Names loadNames(const std::filesystem::path& model);

}  // namespace Modelc
