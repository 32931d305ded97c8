#include <errno.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "apps/common/log/log.h"
#include "unit/server/main/home.h"
#include "unit/server/server.h"

namespace {

constexpr int exitUsage = 2;
/// The log is the product's too: each tick of the server must not fill it.
constexpr int logThreshold = Log::LogAll;

/// One server a unit: the lock lasts as long as the process.
bool takeLock(const std::filesystem::path& folder) {
    const std::string file = folder / "server.lock";
    const int fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        std::fprintf(stderr, "unit-server: %s: %s\n", file.c_str(), std::strerror(errno));
        return false;
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) return true;
    std::fprintf(stderr, "unit-server: the %s has a server already. Stop it first, or choose another TERN_INSTANCE.\n",
                 Unit::unitName().c_str());
    return false;
}

struct Beginning {
    std::string scene, hardware;
    bool lockstep = false;
    std::vector<std::string> hostile;
};

bool prepare(Unit::Server& server, const Beginning& given) {
    std::vector<std::string> problems;
    if (!given.hardware.empty()) server.simulation().loadScene(given.hardware, problems, Unit::SceneUse::Hardware);
    if (!given.scene.empty()) server.simulation().loadScene(given.scene, problems);
    for (const std::string& mode : given.hostile) {
        std::string problem;
        if (!server.hostile().set(mode, problem)) problems.push_back(problem);
    }
    for (const std::string& problem : problems) std::fprintf(stderr, "unit-server: %s\n", problem.c_str());
    return problems.empty();
}

int serve(const Beginning& given) {
    ::umask(0);  // the areas and the gate are for every user of the unit
    const auto folder = Unit::homeFolder();
    if (!takeLock(folder)) return EXIT_FAILURE;
    Unit::Server server({.folder = folder, .wallClock = !given.lockstep},
                        given.lockstep ? Unit::Pace::Lockstep : Unit::Pace::Free);
    if (!prepare(server, given)) return exitUsage;
    server.open();
    std::printf("The server of the %s is ready.\n", Unit::unitName().c_str());
    std::fflush(stdout);
    server.run();
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    Log::threshold = &logThreshold;
    CLI::App options("The stand-in server of a virtual unit. It ends on SIGTERM or SIGINT and leaves nothing behind.",
                     "unit-server");
    Beginning given;
    options.add_option("--hardware", given.hardware,
                       "Scene whose hardware is connected; the saved settings stay as they are");
    options.add_option("--scene", given.scene, "JSON file with the state to begin with, instead of the saved settings");
    options.add_flag("--lockstep", given.lockstep, "Time passes only by the requests of the control socket");
    options.add_option("--hostile", given.hostile, std::string("Misbehave: ") + Unit::Hostile::help);
    try {
        options.parse(argc, argv);
        return serve(given);
    } catch (const CLI::Success& help) {
        return options.exit(help);
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "unit-server: %s. See: unit-server --help\n", error.what());
        return exitUsage;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "unit-server: %s\n", problem.what());
        return EXIT_FAILURE;
    }
}
