#pragma once

#include <string>
#include <vector>

/// Rows of a comma-separated text as spreadsheets write it (RFC 4180): cells with commas, quotes or line breaks stand
/// in quotes, a quote within is doubled. A byte order mark at the beginning is skipped. A semicolon separates as well
/// when the first line holds one and no comma, as some spreadsheets write it.
std::vector<std::vector<std::string>> parseCsv(const std::string& text);

/// One row with its line end.
std::string csvRow(const std::vector<std::string>& cells);

/// What tells a spreadsheet that the file is UTF-8.
inline constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
