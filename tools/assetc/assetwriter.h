#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/assetc/fontmaker.h"
#include "tools/assetc/imagedata.h"

/// Writes all assets as constant data below `folder`:
///   model/assets/assets.bin    tables and atlas of each font, then the pixels of each image, each on a word's border
///   model/assets/assets.S      brings the file in with .incbin, one symbol a table
///   model/assets/records.cpp   the records that point into it
///   model/images.h             names the images
/// Files that would not change are left alone.
void writeAssets(const std::filesystem::path& folder, const std::vector<FontData>& fonts,
                 const std::vector<ImageData>& images);

/// The C++ name of an image: "link-search-a" gives linkSearchA; a keyword gets an underscore behind it.
std::string identifierOf(const std::string& imageName);
