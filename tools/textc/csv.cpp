#include "tools/textc/csv.h"

namespace {

class CsvReader {
  public:
    explicit CsvReader(const std::string& text) : text_(text) {
        if (text_.starts_with(byteOrderMark)) position_ = 3;
        const std::string head = text_.substr(0, text_.find('\n'));
        if (head.find(',') == std::string::npos && head.find(';') != std::string::npos) separator_ = ';';
    }

    std::vector<std::vector<std::string>> rows() {
        std::vector<std::vector<std::string>> rows;
        while (position_ < text_.size()) rows.push_back(row());
        return rows;
    }

  private:
    std::vector<std::string> row() {
        std::vector<std::string> cells(1, cell());
        while (position_ < text_.size() && text_[position_] == separator_) {
            ++position_;
            cells.push_back(cell());
        }
        if (position_ < text_.size() && text_[position_] == '\r') ++position_;
        if (position_ < text_.size() && text_[position_] == '\n') ++position_;
        return cells;
    }

    std::string cell() {
        std::string result;
        if (position_ < text_.size() && text_[position_] == '"') result = quoted();
        while (position_ < text_.size() && text_[position_] != separator_ && text_[position_] != '\r' &&
               text_[position_] != '\n')
            result += text_[position_++];
        return result;
    }

    std::string quoted() {
        std::string result;
        for (++position_; position_ < text_.size(); ++position_) {
            if (text_[position_] == '"' && (position_ + 1 == text_.size() || text_[++position_] != '"')) break;
            result += text_[position_];
        }
        return result;
    }

    const std::string& text_;
    std::size_t position_ = 0;
    char separator_ = ',';
};

}  // namespace

std::vector<std::vector<std::string>> parseCsv(const std::string& text) {
    return CsvReader(text).rows();
}

std::string csvRow(const std::vector<std::string>& cells) {
    std::string row;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i) row += ',';
        if (cells[i].find_first_of(",;\"\r\n") == std::string::npos) {
            row += cells[i];
            continue;
        }
        row += '"';
        for (const char c : cells[i]) row += c == '"' ? std::string("\"\"") : std::string(1, c);
        row += '"';
    }
    return row + "\r\n";
}
