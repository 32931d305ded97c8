#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// The whole file. Throws InputError if it cannot be read.
std::string readTextFile(const std::filesystem::path& path);

/// Writes `content` unless the file already holds it, so that an unchanged output keeps its time stamp and nothing
/// that depends on it is built again. Makes the folder. Throws InputError if it cannot be written.
void writeIfChanged(const std::filesystem::path& path, std::string_view content);
