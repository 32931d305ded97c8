// Measures start-up of a model of the product's size: the link phase with the first notification of every variable,
// and the memory that is resident afterwards.
#include <time.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "model/runtime/generated.h"

namespace {

/// CPU time of the process, in milliseconds: on a busy machine the only time that means something.
double cpuMilliseconds() {
    timespec now;
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void printMemory() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string line; std::getline(rollup, line);)
        if (line.rfind("Rss:", 0) == 0 || line.rfind("Pss:", 0) == 0 || line.rfind("Private_Dirty:", 0) == 0)
            std::printf("  %s\n", line.c_str());
}

}  // namespace

int main() {
    const double begin = cpuMilliseconds();
    Model::link(Model::modelLink, Model::variables);
    const double linked = cpuMilliseconds();
    Model::syncAll(true);
    const double again = cpuMilliseconds();
    std::printf("link phase and first sync: %.2f ms of CPU; a second whole sync: %.2f ms\n", linked - begin,
                again - linked);
    printMemory();
    return 0;
}
