#include "unit/ctl/notices.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

#include "unit/ctl/problem.h"

namespace Unit {

namespace fs = std::filesystem;

namespace {

constexpr const char* toneWords[] = {"info", "problem"};

bool isKey(const std::string& key) {
    const auto fits = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    };
    return !key.empty() && key.size() <= Notices::longestKey && std::ranges::all_of(key, fits);
}

// First line the tone, second the title, then the text.
std::optional<Notices::Notice> readNotice(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string tone;
    Notices::Notice notice;
    if (!std::getline(stream, tone) || !std::getline(stream, notice.title)) return std::nullopt;
    if (tone != toneWords[0] && tone != toneWords[1]) return std::nullopt;
    notice.key = file.filename().string();
    notice.tone = tone == toneWords[1] ? Notices::Tone::Problem : Notices::Tone::Info;
    notice.text.resize(Notices::longestText);
    stream.read(notice.text.data(), static_cast<std::streamsize>(notice.text.size()));
    notice.text.resize(static_cast<std::size_t>(stream.gcount()));
    return notice;
}

}  // namespace

void Notices::post(const Notice& notice) const {
    if (!isKey(notice.key))
        throw Problem("\"" + notice.key + "\" cannot name a notice; use up to 64 letters, digits, '-' and '_'.");
    std::error_code error;
    fs::create_directories(folder_, error);
    // Whoever reads sees the whole notice or none: keys have no point in them.
    const std::string file = folder_ + "/" + notice.key, draft = file + ".new";
    std::string title = notice.title;
    std::ranges::replace(title, '\n', ' ');
    std::ofstream out(draft, std::ios::binary | std::ios::trunc);
    out << toneWords[notice.tone == Tone::Problem ? 1 : 0] << '\n' << title << '\n' << notice.text;
    out.close();
    if (out) fs::rename(draft, file, error);
    if (!out || error) throw Problem("The notice cannot be written to " + file + ".");
}

bool Notices::remove(const std::string& key) const {
    std::error_code ignored;
    return isKey(key) && fs::remove(folder_ + "/" + key, ignored);
}

void Notices::clear() const {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::vector<Notices::Notice> Notices::all() const {
    std::vector<Notice> found;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder_, ignored)) {
        if (!isKey(entry.path().filename().string())) continue;
        if (auto notice = readNotice(entry.path())) found.push_back(std::move(*notice));
    }
    std::ranges::sort(found, {}, &Notice::key);
    return found;
}

}  // namespace Unit
