#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>

#include "tools/texttable/texttable.h"

/// The texts of one language as a spreadsheet: key, name, English, translation, one row a text.
std::string exportLanguage(const TextTable& texts, std::size_t language);

/// Takes the translations of a spreadsheet that exportLanguage made back into the files of `folder`. Rows whose text is
/// unknown, whose English text has changed since, or whose placeholders differ are left out and named in `report`; an
/// empty cell changes nothing. Returns the number of texts changed. Throws InputError if the spreadsheet lacks a
/// column.
int importLanguage(const std::filesystem::path& folder, const std::string& column, const std::filesystem::path& sheet,
                   std::ostream& report);

/// Lists the texts that have no translation, and returns their number.
int listMissing(const TextTable& texts, std::size_t language, std::ostream& out);
