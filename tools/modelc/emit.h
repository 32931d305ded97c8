#pragma once

#include <filesystem>

#include "tools/modelc/lowered.h"

namespace Modelc {

/// The name of the C++ files that a source becomes: its path from the folder that the compiler was given, with
/// underscores ("pages_home_ldd"). What a build lists does not hang on what stands in the sources.
std::string stemOf(const std::filesystem::path& relative);

/// A source and the stem of its C++ files.
struct EmittedSource {
    const SourceFile* file;
    std::string stem;
};

/// Writes the model as C++ into `folder`: STEM.h and STEM.cpp for each source, rules, observers and model beside them.
/// A file whose contents did not change keeps its time, so that only what changed is compiled again. Throws
/// std::runtime_error when a file cannot be written or two sources have one stem.
void emit(const Lowered& lowered, const std::vector<EmittedSource>& sources, const std::filesystem::path& folder);

/// The lowered form as text, for people.
void print(const Lowered& lowered, std::ostream& out);

}  // namespace Modelc
