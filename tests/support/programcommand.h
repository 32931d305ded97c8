#pragma once

#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Support {

/// Becomes `program` of this build with `arguments`; returns only when that fails. A build for another machine runs its
/// programs under the emulator.
inline void executeProgram(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
#ifdef TERN_EMULATOR
    const std::string emulator = TERN_EMULATOR;
    for (std::size_t at = 0, end; at < emulator.size(); at = end + 1) {
        end = std::min(emulator.find(' ', at), emulator.size());
        words.push_back(emulator.substr(at, end - at));
    }
#endif
    words.push_back(program);
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
}

}  // namespace Support
