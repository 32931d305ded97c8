#pragma once

#include <cstdio>
#include <optional>

/// What the command line asks for.
struct Options {
    bool verifyTexts = false;  ///< -t was given
    int language = 0;          ///< its number
};

/// Reads the command line. Nothing when the program is to end with status 1: then usage has been written to `errors`.
std::optional<Options> parseOptions(int argc, char** argv, std::FILE* errors);
