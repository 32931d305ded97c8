#include "product.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "tests/support/programcommand.h"

Product::Product() : driver_(std::make_unique<Platform::Virtual::Driver>()), server_(std::make_unique<StubServer>()) {
    driver_->holdClockAt(1'000'000'000'000);
    driver_->holdVsync();
}

Product::~Product() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
}

void Product::start(std::vector<std::string> arguments, std::vector<std::string> environment) {
    process_ = ::fork();
    if (process_ != 0) return;
    ::setenv("TERN_INSTANCE", instance_.place().name.c_str(), 1);
    ::setenv("TERN_INSTANCE_DIR", instance_.place().folder.c_str(), 1);
    for (auto& one : environment) ::putenv(one.data());
    const int errors = ::open((instance_.place().folder + "/stderr").c_str(), O_WRONLY | O_CREAT, 0600);
    ::dup2(errors, STDERR_FILENO);
    Support::executeProgram(TERN_BINARY_DIR "/bin/gui-virtual", arguments);
    ::_exit(127);
}

bool Product::step(int frames) {
    for (int i = 0; i < frames; ++i)
        if (!driver_->stepFrame()) return false;
    return true;
}

bool Product::stepUntilLogged(const std::string& text, int frames) {
    for (int i = 0; i < frames; ++i) {
        if (log().find(text) != std::string::npos) return true;
        if (!step()) return false;
    }
    return log().find(text) != std::string::npos;
}

int Product::stop() {
    ::kill(process_, SIGTERM);
    driver_->step(4);
    return waitForEnd();
}

int Product::waitForEnd() {
    for (int tenths = 0; tenths < 100; ++tenths) {
        int status = 0;
        driver_->step(1);
        if (::waitpid(process_, &status, WNOHANG) == process_) {
            process_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        ::usleep(100'000);
    }
    return -1;
}

std::string Product::log() const {
    std::ifstream file(Platform::Virtual::path("/dev/kmsg"));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::uint32_t Product::pixel(unsigned x, unsigned y) const {
    const auto picture = driver_->shot();
    return picture.pixels.at(std::size_t{y} * picture.width + x) & 0xffffff;
}
