#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/assetc/imagedata.h"

/// One row of the icon table.
struct IconEntry {
    std::string name;
    std::filesystem::path file;
    PixelFormat format = PixelFormat::Mask8;
    int width = 0;
    int height = 0;
    std::string meaning;
};

/// Reads the icon table. Files are named beside it. Throws InputError for a gap in the numbers, a name that is used
/// twice, or an unknown format.
std::vector<IconEntry> readIconList(const std::filesystem::path& table);

/// Draws the vector file at one pixel a unit. Throws InputError if it is missing, is no drawing, or has another size
/// than the table says.
ImageData drawIcon(const IconEntry& entry);
