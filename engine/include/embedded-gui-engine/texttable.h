#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// The texts of one language by key, UTF-8, none null.
using LanguageTexts = std::span<const char* const>;

/// Where textForId finds its texts: one table a language, in the order of the values of `language`, constant and not
/// owned. Until `language` is set every text is empty, which lets labels take a key before the model is linked. A
/// language without a table reads the first one, a key beyond the table gives the empty text. Null pointers and an
/// empty span are allowed.
void setTextTable(std::span<const LanguageTexts> languages, const ValueProvider<int>* language);

}  // namespace Engine
