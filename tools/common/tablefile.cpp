#include "tools/common/tablefile.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "tools/common/inputerror.h"
#include "tools/common/textfile.h"
#include "tools/common/utf8.h"

namespace {

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '\t')
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

}  // namespace

TableFile TableFile::read(const std::filesystem::path& path) {
    return parse(path, readTextFile(path));
}

TableFile TableFile::parse(const std::filesystem::path& path, const std::string& text) {
    TableFile table;
    table.path_ = path;
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        if (!isUtf8(line)) throw InputError(path, number, "this line is not UTF-8; save the file in that encoding");
        Row row{number, cellsOf(line)};
        if (table.columns_.empty()) {
            table.columns_ = row.cells;
            continue;
        }
        if (row.cells.size() != table.columns_.size())
            throw InputError(path, number,
                             "this row has " + std::to_string(row.cells.size()) + " cells, but there are " +
                                 std::to_string(table.columns_.size()) + " columns");
        table.rows_.push_back(std::move(row));
    }
    if (table.columns_.empty()) throw InputError(path, 0, "the file is empty; its first line must name the columns");
    return table;
}

std::size_t TableFile::column(const std::string& name) const {
    const auto found = std::find(columns_.begin(), columns_.end(), name);
    if (found == columns_.end()) throw InputError(path_, 1, "there is no column '" + name + "'");
    return static_cast<std::size_t>(found - columns_.begin());
}

int TableFile::number(const Row& row, std::size_t column) const {
    const std::string& cell = row.cells[column];
    int value = 0;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
    if (error != std::errc() || end != cell.data() + cell.size())
        fail(row, "'" + cell + "' in the column '" + columns_[column] + "' is not a whole number");
    return value;
}

void TableFile::fail(const Row& row, const std::string& message) const {
    throw InputError(path_, row.line, message);
}
