// Measures start-up of a model of the product's size: the link phase with the first notification of every variable,
// and the memory that is resident afterwards.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "model/runtime/generated.h"

namespace {

double milliseconds(std::chrono::steady_clock::duration duration) { return std::chrono::duration<double, std::milli>(duration).count(); }

void printMemory() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string line; std::getline(rollup, line);)
        if (line.rfind("Rss:", 0) == 0 || line.rfind("Pss:", 0) == 0 || line.rfind("Private_Dirty:", 0) == 0) std::printf("  %s\n", line.c_str());
}

}  // namespace

int main() {
    const auto begin = std::chrono::steady_clock::now();
    Model::link(Model::modelLink, Model::variables);
    const auto linked = std::chrono::steady_clock::now();
    Model::syncAll(true);
    const auto again = std::chrono::steady_clock::now();
    std::printf("link phase and first sync: %.2f ms; a second whole sync: %.2f ms\n", milliseconds(linked - begin), milliseconds(again - linked));
    printMemory();
    return 0;
}
