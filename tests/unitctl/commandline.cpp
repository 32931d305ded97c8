#include "commandline.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

/// A file that nobody else of this run uses.
std::string scratch(const char* what) {
    static int count = 0;
    return testing::TempDir() + "unitctl-" + std::to_string(::getpid()) + "-" + std::to_string(++count) + what;
}

}  // namespace

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

Outcome runProgram(const std::vector<std::string>& words) {
    const std::string out = scratch(".out"), errors = scratch(".err");
    const pid_t child = ::fork();
    if (child == 0) {
        std::vector<char*> argv;
        for (const auto& word : words) argv.push_back(const_cast<char*>(word.c_str()));
        argv.push_back(nullptr);
        ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        ::dup2(::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Outcome outcome = {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(errors)};
    fs::remove(out);
    fs::remove(errors);
    return outcome;
}

TestUnit::TestUnit() {
    static int count = 0;
    name_ = "ctltest-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
}

TestUnit::~TestUnit() {
    ctl({"stop"});
    EXPECT_EQ(sharedObjects(), std::vector<std::string>{});
    fs::remove_all(folder());
}

std::string TestUnit::folder() const {
    return "/tmp/tern-" + std::to_string(::geteuid()) + "/" + name_;
}

Outcome TestUnit::ctl(std::vector<std::string> words) const {
    words.insert(words.begin(), TERN_BINARY_DIR "/bin/unitctl");
    // Before or behind the verb; nothing but words may stand behind "--".
    const bool behind = std::ranges::find(words, "--") == words.end();
    words.insert(behind ? words.end() : words.begin() + 1, {"--instance", name_});
    return runProgram(words);
}

std::string TestUnit::say(const std::vector<std::string>& words) const {
    Outcome outcome = ctl(words);
    EXPECT_EQ(outcome.status, 0) << words.front() << ": " << outcome.errors;
    if (outcome.out.ends_with('\n')) outcome.out.pop_back();
    return outcome.out;
}

pid_t TestUnit::startServer() const {
    const pid_t child = ::fork();
    if (child != 0) return child;
    ::setenv("TERN_INSTANCE", name_.c_str(), 1);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    ::execl(TERN_BINARY_DIR "/bin/unit-server", "unit-server", nullptr);
    ::_exit(127);
}

void endProcess(pid_t process, int signal) {
    ::kill(process, signal);
    ::waitpid(process, nullptr, 0);
}

std::vector<std::string> TestUnit::sharedObjects() const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator("/dev/shm"))
        if (const auto name = entry.path().filename().string(); name.find("-" + name_ + ".") != std::string::npos)
            found.push_back(name);
    return found;
}
