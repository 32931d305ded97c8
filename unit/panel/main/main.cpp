// unit-panel: the front panel of a running virtual unit, as a web page on the loopback.
#include <sys/stat.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <string>

#include "unit/ctl/lockfile.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/supervisor.h"
#include "unit/panel/pagefiles.h"
#include "unit/panel/panel.h"

namespace {

constexpr int exitUsage = 2;

int refuse(const char* problem, const char* word) {
    std::fprintf(stderr, "unit-panel: %s \"%s\". Usage: unit-panel [--port N]; the unit of TERN_INSTANCE must run.\n",
                 problem, word);
    return exitUsage;
}

void requireUnit(const Platform::Virtual::Place& place) {
    if (!Unit::LockFile::isHeld(Unit::Supervisor::lockPath(place.folder)))
        throw Unit::Problem("No unit \"" + place.name + "\" runs. Start it: unitctl start --instance " + place.name);
}

}  // namespace

int main(int argc, char** argv) {
    std::uint16_t port = 0;
    if (argc == 3 && std::strcmp(argv[1], "--port") == 0) {
        const char* end = argv[2] + std::strlen(argv[2]);
        const auto [last, failed] = std::from_chars(argv[2], end, port);
        if (failed != std::errc() || last != end) return refuse("A port is a number up to 65535, not", argv[2]);
    } else if (argc != 1) {
        return refuse("There is no", argv[1]);
    }
    try {
        const auto place = Platform::Virtual::Place::fromEnvironment();
        requireUnit(place);
        Unit::Panel panel(place, port, Unit::pageFiles());
        // Who started this reads the address there.
        std::ofstream(Unit::Supervisor::panelAddressFile(place.folder)) << panel.address() << '\n';
        std::printf("%s\n", panel.address().c_str());
        std::fflush(stdout);
        panel.run();
        return EXIT_SUCCESS;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "unit-panel: %s\n", problem.what());
        return EXIT_FAILURE;
    }
}
