#include "unit/ctl/scenefile.h"

#include <algorithm>
#include <filesystem>

#include "unit/ctl/installation.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace fs = std::filesystem;

std::vector<std::string> sceneNames() {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(Installation::own().scenes, ignored))
        if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
    std::ranges::sort(names);
    return names;
}

std::string findScene(const std::string& name) {
    std::error_code ignored;
    if (fs::is_regular_file(name, ignored)) return fs::absolute(name).string();
    const fs::path own = fs::path(Installation::own().scenes) / (name + ".json");
    if (name.find('/') == std::string::npos && fs::is_regular_file(own, ignored)) return own.string();
    std::string known;
    for (const auto& one : sceneNames()) known += " " + one;
    throw Problem("There is no scene file " + name + "." + suggestion(name, sceneNames()) +
                  (known.empty() ? "" : " These come with the unit:" + known));
}

}  // namespace Unit
