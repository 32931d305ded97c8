#include "unit/server/modules/filetree.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "unit/server/modules/optics.h"

namespace Unit {

namespace fs = std::filesystem;

namespace {

void write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text << '\n';
}

}  // namespace

FileTree::FileTree(fs::path folder) : folder_(std::move(folder)) {
    makeSamples();
    expand(internal());
    expand(usb());
}

void FileTree::makeSamples() const {
    const auto lensFile = [](const LensModel& lens) { return "{\"lens\": \"" + std::string(lens.name) + "\"}"; };
    if (!fs::exists(internal())) {
        for (const LensModel& lens : lensModels())
            write(internal() / "lenses" / (std::string(lens.name) + ".lens"), lensFile(lens));
        for (const char* empty : {"rings", "setups", "diopters"}) fs::create_directories(internal() / empty);
        write(internal() / "diopters" / "half.diopter", R"({"diopter": "+1/2", "model": "Full 138", "power": 0.5})");
        write(internal() / "diopters" / "two.diopter", R"({"diopter": "+2", "model": "Full 138", "power": 2})");
    }
    if (fs::exists(usb())) return;
    write(usb() / "lenses" / "rental" / "prime-75.lens", lensFile(*findLens("prime-75")));
    write(usb() / "lenses" / "broken.lens", "this is no lens");
    write(usb() / "rings" / "prime-35.ring",
          R"({"ring": "P35", "axis": 0, "marks": [[0.1, 0.4], [0.4, 1], [0.9, 5]]})");
    write(usb() / "firmware" / "hand-0.2.0.fw", "{\"version\": \"0.2.0\", \"device\": \"hand\"}");
    write(usb() / "firmware" / "damaged.fw", "damaged");
}

const char* FileTree::suffixOf(int type) {
    static constexpr std::array suffixes = {".lens", ".ring", ".setup", ".diopter"};
    return suffixes[static_cast<std::size_t>(std::clamp(type, 0, 3))];
}

bool FileTree::isPlainName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

fs::path FileTree::resolve(const std::string& name) const {
    const fs::path wanted = fs::path(name).lexically_normal();
    const bool outside = name.empty() || wanted.is_absolute() || *wanted.begin() == "..";
    const bool known = !outside && (*wanted.begin() == "internal" || (*wanted.begin() == "usb" && usb_));
    return known && fs::exists(folder_ / wanted) ? folder_ / wanted : fs::path();
}

std::string FileTree::nameOf(const fs::path& path) const {
    return path.lexically_relative(folder_).string();
}

std::vector<FileTree::Row> FileTree::rows(const std::string& suffix, bool foldersOnly, std::size_t limit) const {
    std::vector<Row> rows;
    addFolder(rows, {internal(), 0, true, true}, suffix, foldersOnly, limit);
    if (usb_) addFolder(rows, {usb(), 0, true, false}, suffix, foldersOnly, limit);
    return rows;
}

void FileTree::addFolder(std::vector<Row>& rows, const Row& folder, const std::string& suffix, bool foldersOnly,
                         std::size_t limit) const {
    if (rows.size() >= limit) return;
    rows.push_back(folder);
    if (!isExpanded(folder.path)) return;
    std::vector<Row> inside;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder.path, ignored)) {
        if (entry.is_symlink(ignored)) continue;
        const bool isFolder = entry.is_directory(ignored);
        const bool wanted = isFolder || (!foldersOnly && (suffix.empty() || entry.path().extension() == suffix));
        if (wanted) inside.push_back({entry.path(), folder.depth + 1, isFolder, folder.internal});
    }
    std::sort(inside.begin(), inside.end(), [](const Row& a, const Row& b) {
        return a.folder != b.folder ? a.folder : a.path.filename() < b.path.filename();
    });
    for (const Row& row : inside) {
        if (row.folder) {
            addFolder(rows, row, suffix, foldersOnly, limit);
        } else if (rows.size() < limit) {
            rows.push_back(row);
        }
    }
}

}  // namespace Unit
