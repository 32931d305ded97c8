#pragma once

#include <string>

namespace Unit {

/// Every value and table that the inspector can show, as JSON:
/// {"values": [[NAME, KIND, ENUM TYPE or -1, MINIMUM or null, MAXIMUM or null], ...],
///  "tables": [[NAME, ROWS, [[FIELD, KIND, ENUM TYPE], ...]], ...], "enums": [[[VALUE, NAME], ...], ...]}
std::string catalogueIndex();

}  // namespace Unit
