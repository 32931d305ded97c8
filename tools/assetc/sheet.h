#pragma once

#include <filesystem>
#include <vector>

#include "tools/assetc/fontmaker.h"
#include "tools/assetc/imagedata.h"

/// Writes two pictures below `folder`: fonts.png shows sample lines of each font, icons.png each image at its size and
/// enlarged. Both are drawn from the finished data alone, just as the product sees it.
void writeSheets(const std::filesystem::path& folder, const std::vector<FontData>& fonts,
                 const std::vector<ImageData>& images);
