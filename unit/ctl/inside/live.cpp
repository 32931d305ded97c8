#include "unit/ctl/inside/live.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "unit/ctl/inside/askunit.h"
#include "unit/ctl/inside/startpage.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/notices.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/productlog.h"

namespace Unit {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* noticeKey = "live";
constexpr int napTime = 200;  // ms between looks at the signals

volatile std::sig_atomic_t ended = 0;

void onSignal(int) {
    ended = 1;
}

/// The source tree that a build folder belongs to.
std::string sourceOf(const std::string& build) {
    std::ifstream cache(build + "/CMakeCache.txt");
    constexpr std::string_view key = "CMAKE_HOME_DIRECTORY:INTERNAL=";
    for (std::string line; std::getline(cache, line);)
        if (line.starts_with(key)) return line.substr(key.size());
    throw Problem(build + " is no build folder: live editing needs the one that this unitctl was built in.");
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string inSeconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", seconds);
    return text;
}

/// The lines of a failed build that say why; ninja's own stay out.
std::string reasonsOf(const std::string& text) {
    std::string reasons;
    for (std::size_t start = 0; start < text.size();) {
        const auto end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        if (line.starts_with("[") || line.starts_with("FAILED:") || line.starts_with("ninja:")) continue;
        reasons += line + "\n";
    }
    return reasons;
}

}  // namespace

Live::Live(Platform::Virtual::Place place, std::function<void(const std::string&)> report)
    : place_(std::move(place)),
      report_(std::move(report)),
      build_(fs::path(Installation::own().programs).parent_path().string()),
      model_(sourceOf(build_) + "/model") {
    askUnit(place_, "status");
    watch_.emplace(model_);
}

void Live::run(Saves saves) {
    for (const int number : {SIGINT, SIGTERM}) ::signal(number, onSignal);
    report_("Watching " + model_ + ". Save a source to see it; Ctrl-C ends it.");
    while (ended == 0) {
        const std::string changed = watch_->wait(napTime);
        if (changed.empty()) continue;
        report_(fs::relative(changed, model_).string() + " was saved.");
        update();
        if (saves == Saves::One) break;
    }
    Notices(place_.folder).remove(noticeKey);
}

void Live::update() {
    const auto saved = Clock::now();
    try {
        // The compiler alone first: it answers at once, and speaks to a person.
        const Output checked = runTool({build_ + "/bin/modelc", "--model", model_, model_});
        if (!checked.good) return showProblem("The model has errors", checked.text);
        const double compiled = secondsSince(saved);
        const Output built = runTool({"ninja", "-C", build_, "gui-virtual"});
        if (!built.good) return showProblem("The product does not build", reasonsOf(built.text));
        const double linked = secondsSince(saved);
        restart();
        Notices(place_.folder).remove(noticeKey);
        report_("Shown after " + inSeconds(secondsSince(saved)) + " (checked " + inSeconds(compiled) + ", built " +
                inSeconds(linked - compiled) + ").");
    } catch (const Problem& problem) {
        showProblem("The product does not start", problem.what());
    }
}

void Live::restart() {
    const auto status = nlohmann::json::parse(askUnit(place_, "status"));
    std::string page = status.value("page", "");
    const auto pages = StartPage(build_ + "/bin/gui-virtual").pages();
    if (!page.empty() && std::ranges::find(pages, page) == pages.end()) {
        report_("There is no page " + page + " any more; the product starts with its own.");
        page.clear();
    }
    askUnit(place_, page.empty() ? "goto" : "goto " + page);
}

void Live::showProblem(const std::string& title, const std::string& text) {
    report_(text);
    report_(title + ". The product that runs stays as it was.");
    Notices(place_.folder).post({noticeKey, Notices::Tone::Problem, title, text});
}

Live::Output Live::runTool(const std::vector<std::string>& words) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw Problem(std::string("pipe: ") + std::strerror(errno));
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        std::vector<char*> argv;
        for (const auto& word : words) argv.push_back(const_cast<char*>(word.c_str()));
        argv.push_back(nullptr);
        ::execvp(argv[0], argv.data());
        std::fprintf(stderr, "%s cannot be started: %s\n", argv[0], std::strerror(errno));
        ::_exit(127);
    }
    ::close(ends[1]);
    Output output = {false, ""};
    char part[4096];
    for (ssize_t got; (got = ::read(ends[0], part, sizeof part)) > 0 || (got < 0 && errno == EINTR);)
        if (got > 0) output.text.append(part, static_cast<std::size_t>(got));
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    output.good = child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return output;
}

}  // namespace Unit
