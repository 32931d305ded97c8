#pragma once

#include <string>
#include <vector>

#include "unit/ctl/inside/atlas.h"

namespace Unit {

enum class Change { None, New, Gone, Other };

struct SheetEntry {
    AtlasPicture picture;
    Change change = Change::None;
    std::string before;      ///< file of the earlier picture, as the sheet refers to it; empty for none
    std::string difference;  ///< likewise
};

/// The atlas as one HTML page: a row a page, a column a language, style and hand. It can show only what has changed.
/// Nothing comes from elsewhere.
std::string atlasSheet(const std::vector<SheetEntry>& entries, const std::string& against);

}  // namespace Unit
