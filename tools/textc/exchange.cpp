#include "tools/textc/exchange.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "tools/common/inputerror.h"
#include "tools/common/textfile.h"
#include "tools/common/utf8.h"
#include "tools/textc/csv.h"

namespace {

constexpr char nameColumn[] = "name", englishColumn[] = "english", translationColumn[] = "translation";

struct Line {
    std::string english, translation;
};

// By name of the text.
using Sheet = std::map<std::string, Line>;

Sheet readSheet(const std::filesystem::path& path) {
    const auto rows = parseCsv(readTextFile(path));
    const auto column = [&](const char* name) {
        const auto found = rows.empty() ? rows.end() : rows.begin();
        if (found != rows.end())
            for (std::size_t i = 0; i < found->size(); ++i)
                if ((*found)[i] == name) return i;
        throw InputError(path, 1, std::string("the first row must name a column '") + name + "'");
    };
    const std::size_t name = column(nameColumn), english = column(englishColumn),
                      translation = column(translationColumn);
    const std::size_t width = std::max({name, english, translation}) + 1;
    Sheet sheet;
    for (std::size_t i = 1; i < rows.size(); ++i)
        if (rows[i].size() >= width && !rows[i][name].empty())
            sheet[rows[i][name]] = {rows[i][english], rows[i][translation]};
    return sheet;
}

// Why a translation cannot be taken; empty if it can.
std::string refusal(const Text& text, const Line& line) {
    if (!isUtf8(line.translation)) return "the translation is not UTF-8; save the spreadsheet in that encoding";
    if (line.english != text.english()) return "the English text has changed since: \"" + text.english() + "\"";
    if (placeholdersOf(line.translation) != placeholdersOf(text.english())) return "the placeholders differ";
    return "";
}

}  // namespace

std::string exportLanguage(const TextTable& texts, std::size_t language) {
    std::string sheet = byteOrderMark + csvRow({"key", nameColumn, englishColumn, translationColumn});
    for (const Text& text : texts.texts())
        sheet += csvRow({std::to_string(text.key), text.name, text.english(), text.translations[language]});
    return sheet;
}

int importLanguage(const std::filesystem::path& folder, const std::string& column, const std::filesystem::path& sheet,
                   std::ostream& report) {
    const std::size_t language = TextTable::read(folder).language(column);
    Sheet lines = readSheet(sheet);
    int changed = 0;
    TextTable::rewrite(folder, [&](Text& text) {
        const auto line = lines.find(text.name);
        if (line == lines.end()) return;
        const Line found = line->second;
        lines.erase(line);
        if (found.translation.empty() || found.translation == text.translations[language]) return;
        if (const std::string why = refusal(text, found); !why.empty()) {
            report << text.name << ": left out, " << why << "\n";
            return;
        }
        text.translations[language] = found.translation;
        ++changed;
    });
    for (const auto& [name, line] : lines) report << name << ": left out, there is no text of this name\n";
    return changed;
}

int listMissing(const TextTable& texts, std::size_t language, std::ostream& out) {
    int count = 0;
    for (const Text& text : texts.texts()) {
        if (!text.translations[language].empty()) continue;
        out << text.place() << ": key " << text.key << " '" << text.name << "' has no text in "
            << texts.languages()[language].english << "; English: \"" << text.english() << "\"\n";
        ++count;
    }
    return count;
}
