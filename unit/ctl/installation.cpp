#include "unit/ctl/installation.h"

#include <filesystem>

namespace Unit {

namespace fs = std::filesystem;

namespace {

constexpr const char* package = "tern-unit";

Installation ofPrefix(const fs::path& prefix) {
    const fs::path share = prefix / "share" / package;
    return {.programs = prefix / "lib" / package,
            .command = prefix / "bin/unitctl",
            .scenes = share / "scenes",
            .bootLogo = share / "qz-boot-logo.png",
            .description = share / "description.json"};
}

/// `build` is build/PRESET of the source tree.
Installation ofBuild(const fs::path& build) {
    return {.programs = build / "bin",
            .command = build / "bin/unitctl",
            .scenes = build.parent_path().parent_path() / "unit/scenes",
            .bootLogo = build / "gen/share/qz-boot-logo.png",
            .description = build / "gen/model/model/description.json"};
}

}  // namespace

Installation Installation::own() {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    const fs::path above = folder.parent_path();
    if (folder.filename() == package) return ofPrefix(above.parent_path());
    std::error_code ignored;
    return fs::is_directory(above / "lib" / package, ignored) ? ofPrefix(above) : ofBuild(above);
}

}  // namespace Unit
