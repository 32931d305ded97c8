#pragma once

#include <filesystem>
#include <optional>

#include "tools/texttable/texttable.h"

/// Writes model/texts.h (the names of the keys) and model/texts.cpp (one table of strings a language) below `folder`. A
/// missing translation shows the English text. With `pseudo`, the table of that language holds pseudo-texts.
void writeTexts(const std::filesystem::path& folder, const TextTable& texts, std::optional<std::size_t> pseudo);
