#pragma once

#include <filesystem>
#include <string>

#include "tools/modelc/names.h"

namespace Modelc {

/// Where the names of the model are declared.
struct NameSources {
    std::filesystem::path catalogue;  ///< folder of the variables, events and enums
    std::filesystem::path texts;      ///< folder of the text tables
    std::filesystem::path icons;      ///< table of the icons
    std::filesystem::path fonts;      ///< table of the fonts
};

/// Reads all of them. Throws InputError with everything that is wrong there.
Names loadNames(const NameSources& sources);

}  // namespace Modelc
