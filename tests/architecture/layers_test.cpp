// Reads the include lines of the whole house and fails on an arrow that runs upwards, and on an engine header that
// speaks of the product.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

const fs::path root = TERN_SOURCE_DIR;

// What each floor may include beside itself. The longest matching folder of a file is its floor.
const std::map<std::string, std::set<std::string>> allowed = {
    {"platform", {}},
    {"apps/common/log", {"platform"}},
    {"apps/libs/delayedopen", {"platform", "apps/common/log"}},
    {"apps/common/sharedmemory", {"platform", "apps/common/log"}},
    {"apps/common/event", {"platform", "apps/common/log", "apps/libs/delayedopen"}},
    {"engine", {}},
    {"backend", {"platform", "engine", "apps/common/log", "apps/common/event", "apps/common/sharedmemory"}},
    {"model", {"engine", "backend"}},
    {"apps/gui/common", {"platform", "engine", "apps/common/log", "apps/common/event", "apps/libs/delayedopen"}},
    {"apps/gui/main",
     {"platform", "engine", "backend", "model", "apps/common/log", "apps/common/event", "apps/common/sharedmemory",
      "apps/libs/delayedopen", "apps/gui/common"}},
    {"apps/libs/png", {}},
    {"apps/gui/testcard", {"platform", "apps/common/log", "apps/libs/png", "apps/gui/common"}},
    {"tools", {"model", "tools/textfit"}},
    {"tools/textfit", {"engine"}},
    {"unit",
     {"platform", "model", "apps/common/log", "apps/common/event", "apps/common/sharedmemory", "apps/libs/delayedopen",
      "apps/libs/png"}},
};

std::string floorOf(const std::string& path) {
    std::string best;
    if (path.starts_with("embedded-gui-engine/")) return "engine";
    for (const auto& [folder, below] : allowed)
        if (path.starts_with(folder + "/") && folder.size() > best.size()) best = folder;
    return best;
}

bool isSource(const fs::path& path) {
    const auto extension = path.extension();
    return extension == ".h" || extension == ".cpp" || extension == ".cc" || extension == ".c";
}

template <typename Visit>
void eachSourceOf(const std::string& floor, Visit visit) {
    if (!fs::exists(root / floor)) return;
    for (const auto& entry : fs::recursive_directory_iterator(root / floor))
        if (entry.is_regular_file() && isSource(entry.path())) visit(entry.path());
}

std::string fileText(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

TEST(Layers, IncludesRunDownwardsOnly) {
    const std::regex include("^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\"");
    int files = 0;
    for (const auto& [floor, below] : allowed) {
        eachSourceOf(floor, [&](const fs::path& path) {
            const std::string own = floorOf(fs::relative(path, root).string());
            if (own != floor) return;
            ++files;
            std::ifstream file(path);
            std::string line;
            std::smatch match;
            for (int number = 1; std::getline(file, line); ++number) {
                if (!std::regex_search(line, match, include)) continue;
                const std::string target = floorOf(match[1]);
                EXPECT_TRUE(target.empty() || target == own || below.contains(target))
                    << fs::relative(path, root).string() << ":" << number << ": the floor " << own << " names "
                    << match[1] << " of " << target << ", which does not lie below it";
            }
        });
    }
    EXPECT_GT(files, 0);
}

TEST(Layers, TheEngineKnowsNothingOfTheProduct) {
    const std::regex product("\\b(camera|lens|motor|iris|zoom|unit server)s?\\b", std::regex::icase);
    eachSourceOf("engine/include", [&](const fs::path& path) {
        std::smatch match;
        const std::string text = fileText(path);
        EXPECT_FALSE(std::regex_search(text, match, product))
            << fs::relative(path, root).string() << " speaks of \"" << match.str() << "\"";
    });
}

TEST(Layers, EveryHeaderGuardsItself) {
    for (const auto& [floor, below] : allowed)
        eachSourceOf(floor, [&](const fs::path& path) {
            if (path.extension() != ".h") return;
            EXPECT_NE(fileText(path).find("#pragma once"), std::string::npos) << fs::relative(path, root).string();
        });
}

// Which is what makes each such header prove that it compiles alone.
TEST(Layers, ASourceIncludesItsOwnHeaderFirst) {
    const std::regex firstInclude("(^|\n)[ \t]*#[ \t]*include[ \t]*[\"<]([^\">]+)[\">]");
    for (const auto& [floor, below] : allowed)
        eachSourceOf(floor, [&](const fs::path& path) {
            const std::string stem = path.stem().string();
            const bool own = fs::exists(fs::path(path).replace_extension(".h"));
            const bool ofEngine = fs::exists(root / "engine/include/embedded-gui-engine" / (stem + ".h"));
            if (path.extension() != ".cpp" || !(own || (floor == "engine" && ofEngine))) return;
            const std::string text = fileText(path);
            std::smatch match;
            ASSERT_TRUE(std::regex_search(text, match, firstInclude));
            EXPECT_EQ(fs::path(match[2].str()).filename(), stem + ".h") << fs::relative(path, root).string();
        });
}
