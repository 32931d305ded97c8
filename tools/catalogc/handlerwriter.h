#pragma once

#include <filesystem>

#include "tools/catalogc/layout.h"

/// Writes handler.h and handler.cpp: the rows by message id, the change callbacks, the subscriptions.
void writeHandler(const Layout& layout, const std::filesystem::path& folder);
