#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A tab-separated text file in UTF-8. The first line names the columns; empty lines and lines that begin with '#' are
/// skipped. Every row has exactly the named columns.
class TableFile {
  public:
    struct Row {
        int line = 0;
        std::vector<std::string> cells;
    };

    /// Throws InputError if the file cannot be read, a row has another number of cells than there are columns, or
    /// the text is not UTF-8.
    static TableFile read(const std::filesystem::path& path);
    static TableFile parse(const std::filesystem::path& path, const std::string& text);

    const std::filesystem::path& path() const { return path_; }
    const std::vector<std::string>& columns() const { return columns_; }
    const std::vector<Row>& rows() const { return rows_; }

    /// The position of a column. Throws InputError if there is none of this name.
    std::size_t column(const std::string& name) const;
    /// The cell as a whole number. Throws InputError if it is none.
    int number(const Row& row, std::size_t column) const;
    [[noreturn]] void fail(const Row& row, const std::string& message) const;

  private:
    std::filesystem::path path_;
    std::vector<std::string> columns_;
    std::vector<Row> rows_;
};
