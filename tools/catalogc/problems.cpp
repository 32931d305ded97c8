#include "tools/catalogc/problems.h"

std::string Problems::text() const {
    std::string all;
    for (const Problem& problem : found_) {
        all += problem.file.string();
        if (problem.line != 0) all += ":" + std::to_string(problem.line);
        all += ": " + problem.message + "\n";
    }
    return all;
}
