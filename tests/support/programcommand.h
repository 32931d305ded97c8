#pragma once

#include <unistd.h>

#include <string>
#include <vector>

namespace Support {

/// Becomes `program` of this build with `arguments`; returns only when that fails. A build for another machine runs its
/// programs under the emulator.
inline void executeProgram(const std::string& program, const std::vector<std::string>& arguments) {
#ifdef TERN_EMULATOR
    std::vector<std::string> words = {TERN_EMULATOR, program};
#else
    std::vector<std::string> words = {program};
#endif
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
}

}  // namespace Support
