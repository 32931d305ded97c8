#include "unit/ctl/launch.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "apps/libs/png/encodepng.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

constexpr unsigned settledFrames = 30;
constexpr unsigned longestSettling = 600;

void detach(const std::string& reports) {
    ::setsid();
    const int in = ::open("/dev/null", O_RDONLY);
    const int out = ::open(reports.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(out, STDERR_FILENO);
    ::close(in);
    ::close(out);
}

void report(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

/// In the background process. What keeps the unit from coming up goes to `answer`; an end without a word is success.
int superviseInBackground(const UnitOptions& options, int answer) {
    Supervisor::catchSignals();
    try {
        Supervisor unit(options, report);
        detach(options.place.folder + "/unit.out");
        unit.start();
        ::close(answer);
        unit.run();
        return EXIT_SUCCESS;
    } catch (const std::exception& problem) {
        const std::string text = problem.what();
        if (::write(answer, text.data(), text.size()) < 0) report(text);
        return EXIT_FAILURE;
    }
}

/// Asks the desktop to show the page; without one nothing happens. Forked twice: nobody has to wait for the browser.
void showInBrowser(const std::string& address) {
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) return;
    const pid_t child = ::fork();
    if (child == 0) {
        if (::fork() != 0) ::_exit(0);
        ::setsid();
        const int null = ::open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(null, stream);
        ::execlp("xdg-open", "xdg-open", address.c_str(), nullptr);
        ::_exit(127);
    }
    if (child > 0) ::waitpid(child, nullptr, 0);
}

}  // namespace

void startInBackground(const UnitOptions& options) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw Problem(std::string("pipe: ") + std::strerror(errno));
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0) throw Problem(std::string("fork: ") + std::strerror(errno));
    if (child == 0) {
        ::close(ends[0]);
        std::_Exit(superviseInBackground(options, ends[1]));
    }
    ::close(ends[1]);
    std::string problem;
    char block[1024];
    for (ssize_t got; (got = ::read(ends[0], block, sizeof block)) > 0 || (got < 0 && errno == EINTR);)
        if (got > 0) problem.append(block, static_cast<std::size_t>(got));
    ::close(ends[0]);
    int status = 0;
    const bool ended = ::waitpid(child, &status, problem.empty() ? WNOHANG : 0) == child;
    if (!problem.empty()) throw Problem(problem);
    if (ended) throw Problem("The unit ended while it started. See " + options.place.folder + "/unit.out");
}

void runInForeground(const UnitOptions& options) {
    Supervisor::catchSignals();
    Supervisor unit(options, report);
    unit.start();
    const std::string at = " --instance " + options.place.name;
    const std::string ctl = Installation::own().command;
    if (options.panel == PanelUse::Own) {
        const std::string address = unit.openPanel(options.panelPort);
        report("The front panel: " + address);
        showInBrowser(address);
    }
    report("The unit \"" + options.place.name + "\" runs and shows the page " + unit.log().page() + ". Now try:");
    report("  " + ctl + " shot screen.png" + at + "        what the display shows");
    report("  " + ctl + " press lm" + at + "               a key; keys: ul um ur ll lm lr user1 ... power");
    report("  " + ctl + " touch 120 200" + at + "          the touch panel");
    report("  " + ctl + " list 'VarFocus*'" + at + "       names; get NAME, set NAME VALUE, watch GLOB");
    report("  " + ctl + " --help                 everything else");
    report("Ctrl-C ends it.");
    unit.run();
    report("The unit is stopped.");
}

void writePicture(const Platform::Virtual::Driver& driver, const std::string& file) {
    const auto picture = driver.shot();
    const auto png = encodePng(picture.pixels.data(), picture.width, picture.height);
    if (png.empty()) throw Problem("The display shows nothing that can be written as a picture.");
    std::FILE* out = std::fopen(file.c_str(), "wb");
    const bool written = out != nullptr && std::fwrite(png.data(), 1, png.size(), out) == png.size();
    if (out == nullptr || std::fclose(out) != 0 || !written)
        throw Problem(file + " cannot be written: " + std::strerror(errno));
}

void shootFirstPage(UnitOptions options, const std::string& file) {
    Supervisor::catchSignals();
    options.pacing = Pacing::Lockstep;
    Supervisor unit(options, report);
    unit.start();
    unsigned still = 0;
    std::uint32_t pans = unit.driver().pans();
    for (unsigned frame = 0; frame < longestSettling && still < settledFrames; ++frame) {
        unit.step(1);
        still = unit.driver().pans() == pans ? still + 1 : 0;
        pans = unit.driver().pans();
    }
    writePicture(unit.driver(), file);
}

}  // namespace Unit
