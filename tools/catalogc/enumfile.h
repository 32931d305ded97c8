#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/catalogc/catalogue.h"

/// Reads the file of enum types; its own head tells the form. What is wrong goes into `problems`.
std::vector<EnumType> readEnumFile(const std::filesystem::path& path, const TextTable* texts, Problems& problems);
std::vector<EnumType> parseEnums(const std::filesystem::path& path, const std::string& content, const TextTable* texts,
                                 Problems& problems);
