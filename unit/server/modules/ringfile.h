#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Unit {

/// A marked ring for the knob: what is printed on it, and where.
struct RingFile {
    struct Mark {
        double position;  ///< of the knob, 0 to 1
        double value;     ///< as printed: metres, feet, T-stop or millimetres
    };

    static constexpr std::size_t mostMarks = 100;

    std::string name;
    int axis = 0;           ///< of RingProgrammingAxis
    bool imperial = false;  ///< focus in feet
    bool leftHanded = false;
    std::vector<Mark> marks;  ///< by position

    /// What is printed at a mark, the inches of a length in feet apart.
    std::string main(const Mark& mark) const;
    std::string sub(const Mark& mark) const;

    bool save(const std::filesystem::path& file) const;
    static std::optional<RingFile> load(const std::filesystem::path& file);
};

}  // namespace Unit
