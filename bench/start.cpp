// What the program costs from its start to the first picture of the home page, and what it holds then: a process of its
// own over a stub server that is ready, with a vertical sync that answers at once. The clock is held, so that the boot
// logo's two seconds are no time.
//
//   cpu_ms         processor time of the process, by the kernel's own count; the exec is part of it
//   rss_mib, private_dirty_mib   from its map of memory, when the home page stands
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"

namespace {

class Process {
  public:
    Process() {
        driver_.holdClockAt(1'000'000'000'000);
        driver_.holdVsync();
        process_ = ::fork();
        if (process_ != 0) return;
        ::setenv("TERN_INSTANCE", instance_.place().name.c_str(), 1);
        ::setenv("TERN_INSTANCE_DIR", instance_.place().folder.c_str(), 1);
        ::execl(TERN_PROGRAM, TERN_PROGRAM, nullptr);
        ::_exit(127);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    /// Steps until the program has drawn its home page and waits for the blank.
    void stepToHome() {
        for (int frame = 0; frame < 100; ++frame) {
            const auto drawn = driver_.pans();
            if (!driver_.stepFrame()) throw std::runtime_error("the program does not come to rest");
            if (log().find("USER Page: Home_LDD") != std::string::npos && driver_.pans() > drawn) return;
        }
        throw std::runtime_error("the program shows no home page: " + log());
    }
    double cpuSeconds() const {
        std::ifstream file("/proc/" + std::to_string(process_) + "/schedstat");
        double nanoseconds = 0;
        file >> nanoseconds;
        return nanoseconds * 1e-9;
    }
    /// Kilobytes by the names of /proc/PID/smaps_rollup.
    std::map<std::string, long> memory() const {
        std::ifstream file("/proc/" + std::to_string(process_) + "/smaps_rollup");
        std::map<std::string, long> sizes;
        std::string line;
        std::getline(file, line);
        for (std::string name, unit; file >> name;) {
            long size = 0;
            if (!(file >> size >> unit)) break;
            sizes[name] = size;
        }
        return sizes;
    }

  private:
    std::string log() const {
        std::ifstream file(Platform::Virtual::path("/dev/kmsg"));
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    Platform::Virtual::TemporaryInstance instance_;
    Platform::Virtual::Driver driver_;
    StubServer server_;
    pid_t process_ = -1;
};

void start(benchmark::State& state) {
    std::vector<double> seconds;
    std::map<std::string, long> memory;
    for ([[maybe_unused]] auto iteration : state) {
        Process process;
        process.stepToHome();
        seconds.push_back(process.cpuSeconds());
        memory = process.memory();
        state.SetIterationTime(seconds.back());
    }
    std::ranges::sort(seconds);
    state.counters["least_ms"] = seconds.front() * 1e3;
    state.counters["median_ms"] = seconds[seconds.size() / 2] * 1e3;
    state.counters["rss_mib"] = static_cast<double>(memory["Rss:"]) / 1024;
    state.counters["private_dirty_mib"] = static_cast<double>(memory["Private_Dirty:"]) / 1024;
    state.counters["shared_mib"] = static_cast<double>(memory["Shared_Clean:"] + memory["Shared_Dirty:"]) / 1024;
}
BENCHMARK(start)->UseManualTime()->Iterations(30)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
