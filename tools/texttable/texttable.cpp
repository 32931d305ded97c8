#include "tools/texttable/texttable.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

#include "tools/common/inputerror.h"
#include "tools/common/tablefile.h"
#include "tools/common/textfile.h"
#include "tools/common/utf8.h"

namespace fs = std::filesystem;

namespace {

constexpr char languageFile[] = "languages.tsv";

// In a cell a line break is written \n, a tab \t and a backslash \\.
std::string unescaped(const TableFile& table, const TableFile::Row& row, const std::string& cell) {
    std::string text;
    for (std::size_t i = 0; i < cell.size(); ++i) {
        if (cell[i] != '\\') {
            text += cell[i];
            continue;
        }
        const char kind = ++i < cell.size() ? cell[i] : '\0';
        if (kind != 'n' && kind != 't' && kind != '\\')
            table.fail(row, "a backslash must be followed by n (line break), t (tab) or another backslash");
        text += kind == 'n' ? '\n' : kind == 't' ? '\t' : '\\';
    }
    return text;
}

std::string escaped(const std::string& text) {
    std::string cell;
    for (const char c : text) {
        if (c == '\n')
            cell += "\\n";
        else if (c == '\t')
            cell += "\\t";
        else if (c == '\\')
            cell += "\\\\";
        else
            cell += c;
    }
    return cell;
}

bool isIdentifier(const std::string& name) {
    const auto letter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    const auto inner = [&](char c) { return letter(c) || std::isdigit(static_cast<unsigned char>(c)) || c == '_'; };
    return !name.empty() && letter(name.front()) && std::all_of(name.begin(), name.end(), inner);
}

std::vector<fs::path> textFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".tsv" && entry.path().filename() != languageFile)
            files.push_back(entry.path());
    if (error) throw InputError(folder, 0, "the folder of the texts cannot be read: " + error.message());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<Text> textsOf(const TableFile& table, const std::vector<Language>& languages) {
    const std::size_t key = table.column("key"), name = table.column("name");
    std::vector<std::size_t> columns;
    for (const Language& language : languages) columns.push_back(table.column(language.column));
    std::vector<Text> texts;
    for (const auto& row : table.rows()) {
        Text text{table.number(row, key), row.cells[name], {}, table.path(), row.line};
        for (const std::size_t column : columns) text.translations.push_back(unescaped(table, row, row.cells[column]));
        texts.push_back(std::move(text));
    }
    return texts;
}

void reportText(std::ostream& out, const Text& text, const std::vector<Language>& languages) {
    const auto problem = [&]() -> std::ostream& {
        return out << text.place() << ": key " << text.key << " '" << text.name << "': ";
    };
    if (text.key < 1 || text.key >= TextTable::keyCount)
        problem() << "keys go from 1 to " << TextTable::keyCount - 1 << "\n";
    if (TextTable::isReserved(text.key))
        problem() << "keys " << TextTable::firstReserved << " to " << TextTable::lastReserved
                  << " stay empty; take a free key below\n";
    if (!isIdentifier(text.name))
        problem() << "the name must consist of letters, digits and underscores and begin with a letter\n";
    if (text.english().empty()) {
        problem() << "the English text is missing; a key without a text needs no row\n";
        return;
    }
    for (std::size_t i = 1; i < languages.size(); ++i)
        if (!text.translations[i].empty() && placeholdersOf(text.translations[i]) != placeholdersOf(text.english()))
            problem() << "the placeholders in " << languages[i].english << " (\"" << text.translations[i]
                      << "\") are not those of the English text (\"" << text.english() << "\")\n";
}

}  // namespace

std::vector<int> placeholdersOf(const std::string& text) {
    std::vector<int> found;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '%' || !std::isdigit(static_cast<unsigned char>(text[i + 1]))) continue;
        int number = 0;
        while (i + 1 < text.size() && number < 1000 && std::isdigit(static_cast<unsigned char>(text[i + 1])))
            number = number * 10 + (text[++i] - '0');
        found.push_back(number);
    }
    std::sort(found.begin(), found.end());
    return found;
}

TextTable TextTable::read(const fs::path& folder) {
    TextTable table;
    table.folder_ = folder;
    table.readLanguages(folder / languageFile);
    for (const auto& file : textFiles(folder)) table.readTexts(file);
    std::stable_sort(table.texts_.begin(), table.texts_.end(),
                     [](const Text& a, const Text& b) { return a.key < b.key; });
    if (const std::string problems = table.problems(); !problems.empty())
        throw InputError(folder, 0, "the texts need attention:\n" + problems);
    for (std::size_t i = 0; i < table.texts_.size(); ++i) table.byName_[table.texts_[i].name] = i;
    return table;
}

void TextTable::readLanguages(const fs::path& path) {
    const TableFile table = TableFile::read(path);
    for (const auto& row : table.rows()) {
        const auto cell = [&](const char* column) { return row.cells[table.column(column)]; };
        if (table.number(row, table.column("index")) != static_cast<int>(languages_.size()))
            table.fail(row, "languages must be listed in order, from 0 on");
        languages_.push_back({cell("column"), cell("english"), cell("own")});
    }
    if (languages_.empty()) throw InputError(path, 0, "there is no language");
}

void TextTable::readTexts(const fs::path& path) {
    for (Text& text : textsOf(TableFile::read(path), languages_)) texts_.push_back(std::move(text));
}

std::string TextTable::problems() const {
    std::ostringstream out;
    std::map<std::string, const Text*> names;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const Text& text = texts_[i];
        reportText(out, text, languages_);
        if (i && texts_[i - 1].key == text.key)
            out << text.place() << ": key " << text.key << " is used already at " << texts_[i - 1].place() << "\n";
        if (const auto [other, isNew] = names.emplace(text.name, &text); !isNew)
            out << text.place() << ": the name '" << text.name << "' is used already at " << other->second->place()
                << "\n";
    }
    return out.str();
}

const Text* TextTable::find(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &texts_[found->second];
}

std::size_t TextTable::language(const std::string& column) const {
    std::string known;
    for (std::size_t i = 0; i < languages_.size(); ++i) {
        if (languages_[i].column == column) return i;
        known += (i ? ", " : "") + languages_[i].column;
    }
    throw InputError(folder_ / languageFile, 0, "there is no language '" + column + "'; there are: " + known);
}

void TextTable::eachCharacter(const CharacterVisit& visit) const {
    for (const Text& text : texts_)
        for (std::size_t i = 0; i < languages_.size(); ++i) {
            const auto codes = decodeUtf8(text.translations[i]);
            for (const char32_t code : *codes)
                if (code != U'\n') visit(text, languages_[i], code);
        }
}

void TextTable::rewrite(const fs::path& folder, const std::function<void(Text&)>& change) {
    TextTable languages;
    languages.readLanguages(folder / languageFile);
    for (const auto& file : textFiles(folder)) {
        const TableFile table = TableFile::read(file);
        std::vector<Text> texts = textsOf(table, languages.languages_);
        std::istringstream lines(readTextFile(file));
        std::string line, result;
        auto text = texts.begin();
        for (int number = 1; std::getline(lines, line); ++number) {
            if (text != texts.end() && text->line == number) {
                auto cells = table.rows()[static_cast<std::size_t>(text - texts.begin())].cells;
                const std::vector<std::string> before = text->translations;
                change(*text);
                for (std::size_t i = 0; i < languages.languages_.size(); ++i)
                    if (text->translations[i] != before[i])
                        cells[table.column(languages.languages_[i].column)] = escaped(text->translations[i]);
                line.clear();
                for (std::size_t i = 0; i < cells.size(); ++i) line += (i ? "\t" : "") + cells[i];
                ++text;
            }
            result += line + "\n";
        }
        writeIfChanged(file, result);
    }
}
