#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

/// An input of a tool is wrong. `what()` reads "file:line: what is wrong and what to do"; line 0 leaves the line out.
class InputError : public std::runtime_error {
  public:
    InputError(const std::filesystem::path& file, int line, const std::string& message)
        : std::runtime_error(file.string() + (line ? ":" + std::to_string(line) : "") + ": " + message) {}
};
