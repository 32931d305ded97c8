#pragma once

#include "tools/catalogc/catalogue.h"

/// Everything that the rest of the tool, the program and the server take for granted: names and ids are unique, every
/// value lies inside its area on its own bytes and aligned, limits fit their kinds, enum types and links are complete.
void checkCatalogue(const Catalogue& catalogue, Problems& problems);

/// Every text that an enum names has a row, and the English beside it is that row's.
void checkTexts(const Catalogue& catalogue, const TextTable& texts, Problems& problems);
