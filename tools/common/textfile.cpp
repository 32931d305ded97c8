#include "tools/common/textfile.h"

#include <fstream>
#include <sstream>
#include <utility>

#include "tools/common/inputerror.h"

std::string readTextFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError(path, 0, "the file cannot be opened for reading");
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

void writeIfChanged(const std::filesystem::path& path, std::string_view content) {
    if (std::filesystem::exists(path) && readTextFile(path) == content) return;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) throw InputError(path, 0, "the file cannot be written");
}
