#pragma once

#include <filesystem>

#include "tools/catalogc/catalogue.h"

/// Writes what needs no variable: data.cpp behind model/catalogue/constants.h, and the headers messages.h, events.h,
/// enums.h and places.h.
void writeConstants(const Catalogue& catalogue, const std::filesystem::path& folder);

/// Writes tern-areas.h, the C header for the programs of the server.
void writeServerHeader(const Catalogue& catalogue, const std::filesystem::path& folder);
