#pragma once

#include <string>

namespace Unit {

/// Where the parts of the virtual unit lie. They are found from this program's own place, so that an installation works
/// below any prefix and a build in any folder.
struct Installation {
    std::string programs;     ///< folder of unit-server, gui-virtual and unit-panel
    std::string command;      ///< unitctl
    std::string scenes;       ///< folder of the scenes that come with the unit
    std::string bootLogo;     ///< picture; the unit comes up without it too
    std::string description;  ///< rules of the model, for `why` and `who`

    /// Of this program: it lies in build/PRESET/bin of a source tree, or in PREFIX/bin or PREFIX/lib/tern-unit.
    static Installation own();
};

}  // namespace Unit
