#include "unit/ctl/childprocess.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "unit/ctl/problem.h"
#include "unit/ctl/wholefile.h"

namespace Unit {

namespace {

[[noreturn]] void become(const char* program, char* const* arguments, const char* output, pid_t parent,
                         int whenOrphaned) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, whenOrphaned);
    if (::getppid() != parent) ::_exit(1);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(number, SIG_DFL);
    const int in = ::open("/dev/null", O_RDONLY);
    const int out = ::open(output, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(out, STDERR_FILENO);
    ::execv(program, arguments);
    std::fprintf(stderr, "%s cannot be started: %s\n", program, std::strerror(errno));
    ::_exit(127);
}

std::string describe(int status) {
    if (WIFEXITED(status)) return "with status " + std::to_string(WEXITSTATUS(status));
    return "by signal " + std::to_string(WTERMSIG(status)) + " (" + ::strsignal(WTERMSIG(status)) + ")";
}

}  // namespace

ChildProcess::~ChildProcess() {
    end();
}

void ChildProcess::start(const std::vector<std::string>& arguments) {
    std::vector<char*> argv = {program_.data()};
    for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const pid_t parent = ::getpid();
    std::fflush(nullptr);
    pid_ = ::fork();
    if (pid_ == 0) become(program_.c_str(), argv.data(), output_.c_str(), parent, whenOrphaned_);
    if (pid_ < 0) throw Problem(program_ + " cannot be started: " + std::strerror(errno));
}

std::optional<std::string> ChildProcess::takeEnd() {
    int status = 0;
    if (pid_ <= 0 || ::waitpid(pid_, &status, WNOHANG) != pid_) return std::nullopt;
    pid_ = -1;
    return describe(status);
}

void ChildProcess::signal(int number) const {
    if (pid_ > 0) ::kill(pid_, number);
}

void ChildProcess::end(int patience) {
    constexpr int nap = 5;
    signal(SIGTERM);
    signal(SIGCONT);
    for (int waited = 0; running(); waited += nap) {
        if (takeEnd()) return;
        if (waited >= patience) signal(SIGKILL);
        ::usleep(nap * 1000);
    }
}

std::string ChildProcess::words() const {
    return wholeFile(output_);
}

std::string ChildProcess::lastWords() const {
    std::string all = words();
    while (!all.empty() && (all.back() == '\n' || all.back() == '\r')) all.pop_back();
    return all.substr(all.rfind('\n') + 1);
}

}  // namespace Unit
