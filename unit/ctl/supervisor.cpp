#include "unit/ctl/supervisor.h"

#include <errno.h>
#include <poll.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>
#include <utility>

#include "model/catalogue/constants.h"
#include "unit/ctl/inside/startpage.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/notices.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/record/about.h"
#include "unit/ctl/record/recordingtoplay.h"

namespace Unit {

using namespace std::chrono_literals;

namespace {

constexpr std::int64_t clockAtStart = 1'000'000'000'000;
constexpr std::int64_t frameTime = 1'000'000'000 / 60;
constexpr auto startPatience = 30s;
constexpr auto restPatience = 5s;
constexpr auto framePatience = 5s;
constexpr auto restartPause = 1s;
constexpr auto panelPatience = 10s;
constexpr unsigned framesToFirstPage = 600;
constexpr unsigned framesToSettle = 20;
constexpr unsigned longestStep = 100'000;
constexpr int clientPatience = 1000;  // ms

volatile std::sig_atomic_t stopSignal = 0;

void onSignal(int number) {
    stopSignal = number;
}

template <typename... Words>
[[noreturn]] void fail(const Words&... words) {
    throw Problem((std::string() + ... + words));
}

}  // namespace

void Supervisor::catchSignals() {
    struct sigaction action = {};
    action.sa_handler = onSignal;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(number, &action, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
}

Supervisor::Supervisor(UnitOptions options, Report report)
    : options_(std::move(options)),
      report_(std::move(report)),
      log_(options_.place.folder),
      server_(options_.programs + "/unit-server", options_.place.folder + "/server.out", SIGTERM),
      product_(options_.programs + "/gui-virtual", options_.place.folder + "/product.out", SIGKILL),
      panel_(options_.programs + "/unit-panel", options_.place.folder + "/panel.out", SIGTERM) {
    for (const char* program : {"/unit-server", "/gui-virtual"})
        if (::access((options_.programs + program).c_str(), X_OK) != 0)
            fail("The program ", options_.programs, program, " is missing. Build it, or install the unit anew.");
    driver_ = std::make_unique<Platform::Virtual::Driver>(options_.place);
    takeLock();
    ::setenv("TERN_INSTANCE", options_.place.name.c_str(), 1);
    ::setenv("TERN_INSTANCE_DIR", options_.place.folder.c_str(), 1);
}

Supervisor::~Supervisor() {
    shutDown();
    // The client of "stop" waits for this: by now the name is free again.
    lock_.release();
    if (stopClient_ >= 0) ::close(stopClient_);
}

void Supervisor::takeLock() {
    if (lock_.take(lockPath(options_.place.folder))) return;
    const std::string& name = options_.place.name;
    fail("A unit \"", name, "\" runs already. Stop it (unitctl stop --instance ", name,
         ") or choose another name (--instance NAME).");
}

/// Whoever serves the unit already must not lose its areas to us.
void Supervisor::checkServer() const {
    if (isReplay()) return;
    const std::string& name = options_.place.name;
    if (options_.server == ServerUse::Own) {
        if (!LockFile::isHeld(serverLockPath(options_.place.folder))) return;
        fail("A server of the unit \"", name, "\" runs already. Use it (--no-server), or end it first.");
    }
    char gate[Platform::Virtual::Instance::nameLimit];
    if (driver_->instance().mapName("/message-broker-ready", gate) == nullptr) fail("The name ", name, " is too long.");
    sem_t* semaphore = ::sem_open(gate, 0);
    if (semaphore == SEM_FAILED)
        fail("No server serves the unit \"", name, "\". Start it first, or leave --no-server out.");
    ::sem_close(semaphore);
}

void Supervisor::start() {
    checkServer();
    prepareInstance();
    listen();
    if (options_.server == ServerUse::Own) startServer();
    startProduct();
    isReplay() ? step(options_.tapeFrames) : awaitFirstPage();
    if (options_.panel == PanelUse::Own) openPanel(options_.panelPort);
    lastFrame_ = Clock::now();
}

std::string Supervisor::openPanel(std::uint16_t port) {
    if (panel_.running()) return panelAddress();
    const std::string file = panelAddressFile(options_.place.folder);
    ::unlink(file.c_str());
    options_.panel = PanelUse::Own;
    options_.panelPort = port;
    panel_.start(port == 0 ? std::vector<std::string>{} : std::vector{std::string("--port"), std::to_string(port)});
    const auto end = Clock::now() + panelPatience;
    while (panelAddress().empty()) {
        const auto how = panel_.takeEnd();
        if (!how && Clock::now() < end) {
            std::this_thread::sleep_for(5ms);
            continue;
        }
        options_.panel = PanelUse::None;
        panel_.end();
        const std::string words = panel_.words(), front = "unit-panel: ";
        fail(words.empty() ? "The panel does not come up." : words.substr(words.starts_with(front) ? front.size() : 0));
    }
    return panelAddress();
}

std::string Supervisor::panelAddress() const {
    std::ifstream file(panelAddressFile(options_.place.folder));
    std::string line;
    // Without its end the line is still being written.
    return std::getline(file, line) && !file.eof() ? line : "";
}

// What an earlier unit of that name has left must not be taken for this one's.
void Supervisor::prepareInstance() {
    log_.clear();
    Notices(options_.place.folder).clear();
    auto& instance = driver_->instance();
    ours_ = options_.server == ServerUse::Own || isReplay();
    if (ours_) instance.removeNames();
    framesBefore_ = frames();
    const auto& screen = instance.control().screen;
    instance.setScreen(screen.xres, screen.yres, screen.bits_per_pixel);
    installBootLogo();
    devices_ = std::make_unique<InputDevices>(*driver_);
    if (options_.pacing == Pacing::Free) return;
    driver_->holdClockAt(clockAtStart);
    driver_->holdVsync();
}

void Supervisor::installBootLogo() const {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = fs::path(options_.place.folder) / "usr/share";
    fs::create_directories(folder, ignored);
    fs::copy_file(Installation::own().bootLogo, folder / "qz-boot-logo.png", fs::copy_options::overwrite_existing,
                  ignored);
}

void Supervisor::startServer() {
    std::vector<std::string> arguments;
    std::string scene = options_.scene;
    if (options_.pacing == Pacing::Lockstep) {
        arguments.push_back("--lockstep");
        if (scene.empty() && options_.hardware.empty()) {
            scene = options_.place.folder + "/factory.json";
            std::ofstream(scene) << "{}\n";
        }
    }
    if (!scene.empty())
        arguments.insert(arguments.end(), {"--scene", scene});
    else if (!options_.hardware.empty())
        arguments.insert(arguments.end(), {"--hardware", options_.hardware});
    server_.start(arguments);
    awaitServer();
}

void Supervisor::awaitServer() {
    const auto end = Clock::now() + startPatience;
    while (!serverControl_.connect(serverSocketPath(options_.place.folder))) {
        if (const auto how = server_.takeEnd())
            fail(server_.words().empty() ? "The server ended " + *how + "." : server_.words());
        if (stopSignal != 0) fail("Interrupted.");
        if (Clock::now() > end) fail("The server does not come up: ", server_.lastWords());
        std::this_thread::sleep_for(5ms);
    }
}

void Supervisor::startProduct() {
    auto& control = driver_->instance().control();
    control.permits = 0;
    control.resting = 0;
    beginProduct();
    productStarted_ = lastFrame_ = Clock::now();
    framesSeen_ = frames();
    if (options_.pacing == Pacing::Lockstep) awaitRest();
}

void Supervisor::beginProduct() {
    const std::string program = options_.programs + "/gui-virtual";
    const std::string copy = options_.place.folder + "/gui-virtual";
    if (!options_.page.empty()) StartPage(program).writeCopy(options_.page, copy);
    product_.setProgram(options_.page.empty() ? program : copy);
    std::optional<RecordingToPlay> played;
    if (isReplay()) {
        const Recording tape(options_.tape);
        product_.setProgram(RecordingToPlay::program(tape, program, options_.place.folder));
        played.emplace(tape, Platform::Virtual::OnDifference::GoOn);
    }
    std::optional<RecordingToBegin> recording;
    if (options_.record == Record::On)
        recording.emplace(options_.place.folder, aboutRecording({program, options_.page, options_.scene,
                                                                 options_.pacing == Pacing::Lockstep}));
    product_.start({});
}

void Supervisor::goTo(const std::string& page) {
    if (!page.empty()) StartPage(options_.programs + "/gui-virtual").requirePage(page);
    options_.page = page;
    if (options_.pacing == Pacing::Lockstep) driver_->step(4);
    product_.end();
    log_.clear();
    // On a held clock the boot logo takes no time.
    if (options_.pacing == Pacing::Free) driver_->holdClock();
    startProduct();
    awaitFirstPage();
    if (options_.pacing == Pacing::Free) driver_->releaseClock();
}

std::optional<std::string> Supervisor::takeProductEnd() {
    auto how = product_.takeEnd();
    if (how && options_.record == Record::On) noteEnd(options_.place.folder, *how);
    return how;
}

void Supervisor::awaitFirstPage() {
    const auto end = Clock::now() + startPatience;
    const auto failure = [&](const std::string& what) {
        const std::string words = product_.lastWords();
        fail("The product ", what, words.empty() ? "" : ": " + words, ". Its log is in ", log_.file(), ".");
    };
    for (unsigned frame = 0; log_.page().empty(); ++frame) {
        if (const auto how = takeProductEnd()) failure("ended " + *how + " before its first page");
        if (stopSignal != 0) fail("Interrupted.");
        if (frame > framesToFirstPage && options_.pacing == Pacing::Lockstep) failure("shows no page");
        if (Clock::now() > end) failure("shows no page");
        if (options_.pacing == Pacing::Lockstep)
            stepFrame();
        else
            std::this_thread::sleep_for(10ms);
    }
    settle();
}

// The first page may hand over to the next at once; the line in the log is written before the page is drawn.
void Supervisor::settle() {
    if (options_.pacing == Pacing::Lockstep) {
        std::uint32_t pans = 0;
        for (unsigned frame = 0; frame < framesToSettle && std::exchange(pans, driver_->pans()) != driver_->pans();
             ++frame)
            stepFrame();
        return;
    }
    const auto end = Clock::now() + restPatience;
    const std::uint32_t logged = frames();
    while (frames() - logged < 3 && Clock::now() < end) std::this_thread::sleep_for(5ms);
}

/// Whether there is a server to ask and it did what it was asked.
bool Supervisor::serverAnswers(const std::string& line) {
    if (!serverControl_.connected()) return false;
    serverControl_.ask(line);
    return true;
}

// The product's socket holds a few hundred records and the product waits when it is full, as while it subscribes: the
// server reads then without that time passes.
void Supervisor::awaitRest() {
    const auto patience =
        productStarted_ + startPatience > Clock::now() && log_.page().empty() ? startPatience : restPatience;
    const auto end = Clock::now() + patience;
    while (!driver_->awaitRest(20)) {
        if (const auto how = takeProductEnd()) {
            lastEnd_ = *how;
            if (isReplay()) fail("The recording is over: the product ended ", *how, ". The unit ends.");
            const std::string words = product_.lastWords();
            fail("The product ended ", *how, words.empty() ? "" : ": " + words,
                 ". It is started again; see what it said: unitctl log.");
        }
        if (stopSignal != 0) fail("The unit is being stopped.");
        if (Clock::now() > end)
            fail("The product does not come to rest. See what it does (unitctl log) or stop it (unitctl stop).");
        serverAnswers("drain");
    }
}

void Supervisor::stepFrame() {
    serverAnswers("tick " + std::to_string(frameTime));
    driver_->advanceClock(frameTime);
    driver_->step();
    awaitRest();
}

void Supervisor::step(unsigned frames) {
    if (options_.pacing == Pacing::Free) fail("The unit runs free; start it with --lockstep to step it.");
    for (unsigned i = 0; i < frames; ++i) stepFrame();
}

void Supervisor::listen() {
    const std::string path = socketPath(options_.place.folder);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) fail("The path ", path, " is too long for a socket.");
    std::memcpy(address.sun_path, path.data(), path.size());
    ::unlink(path.c_str());
    listening_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listening_ < 0 || ::bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listening_, 16) != 0)
        fail(path, " cannot be opened: ", std::strerror(errno));
}

void Supervisor::run() {
    while (!stop_ && stopSignal == 0) {
        pollfd entry = {listening_, POLLIN, 0};
        if (::poll(&entry, 1, 50) > 0) serveClient();
        if (stop_ || stopSignal != 0) break;
        try {
            if (options_.server == ServerUse::Own) watchServer();
            watchProduct();
            if (options_.pacing == Pacing::Free) watchFrames();
            if (options_.panel == PanelUse::Own) watchPanel();
        } catch (const Problem& problem) {
            report_(problem.what());
        }
    }
}

// One request a connection.
void Supervisor::serveClient() {
    const int client = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    std::string line;
    char c = 0;
    pollfd entry = {client, POLLIN, 0};
    while (line.size() < 4096 && ::poll(&entry, 1, clientPatience) > 0 && ::read(client, &c, 1) == 1 && c != '\n')
        line += c;
    std::string reply;
    try {
        reply = answer(line);
    } catch (const Problem& problem) {
        reply = std::string("error ") + problem.what();
        for (char& one : reply)
            if (one == '\n') one = ' ';
    }
    reply += '\n';
    if (stop_) {
        stopClient_ = client;
        shutDown();
    }
    if (::send(client, reply.data(), reply.size(), MSG_NOSIGNAL) < 0) report_("A client went without its answer.");
    if (!stop_) ::close(client);
}

std::string Supervisor::answer(const std::string& line) {
    if (line == "status") return "ok " + status();
    if (line == "stop") {
        stop_ = true;
        return "ok";
    }
    if (line == "panel" || line.starts_with("panel ")) {
        std::uint16_t port = 0;
        const char* last = line.data() + line.size();
        if (line.size() > 6) {
            const auto parsed = std::from_chars(line.data() + 6, last, port);
            if (parsed.ec != std::errc() || parsed.ptr != last) fail("A port is a number up to 65535.");
        }
        return "ok " + openPanel(port);
    }
    if (line.starts_with("step ")) {
        unsigned count = 0;
        const char* last = line.data() + line.size();
        const auto parsed = std::from_chars(line.data() + 5, last, count);
        if (parsed.ec != std::errc() || parsed.ptr != last || count < 1 || count > longestStep)
            fail("Say a number of frames from 1 to ", std::to_string(longestStep), ".");
        step(count);
        return "ok";
    }
    if (line == "goto" || line.starts_with("goto ")) {
        goTo(line.substr(std::min<std::size_t>(5, line.size())));
        return "ok";
    }
    fail("There is no request \"", line, "\"; there are status, step, goto, panel and stop.");
}

std::string Supervisor::status() const {
    const nlohmann::json answer = {{"instance", options_.place.name},
                                   {"folder", options_.place.folder},
                                   {"pacing", options_.pacing == Pacing::Free ? "free" : "lockstep"},
                                   {"supervisor", ::getpid()},
                                   {"server", server_.running() ? server_.pid() : 0},
                                   {"product", product_.running() ? product_.pid() : 0},
                                   {"panel", panel_.running() ? panel_.pid() : 0},
                                   {"restarts", restarts_},
                                   {"lastEnd", lastEnd_},
                                   {"frames", frames() - framesBefore_},
                                   {"time", driver_->time()},
                                   {"page", log_.page()}};
    return answer.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::uint32_t Supervisor::frames() const {
    return driver_->pans() + driver_->vsyncWaits();
}

void Supervisor::watchServer() {
    const auto how = server_.takeEnd();
    if (!how) return;
    report_("The server ended " + *how + ": " + server_.lastWords() + " It is started again.");
    serverControl_.close();
    std::this_thread::sleep_for(restartPause);
    driver_->instance().removeNames();
    // What was connected still is; what was set has been saved.
    if (!options_.scene.empty()) options_.hardware = std::exchange(options_.scene, "");
    startServer();
    // What the product has mapped is the old server's.
    driver_->step(4);
    product_.end();
    ++restarts_;
    startProduct();
}

void Supervisor::watchProduct() {
    if (const auto how = takeProductEnd()) lastEnd_ = *how;
    if (product_.running()) return;
    if (isReplay()) {
        report_("The recording is over.");
        stop_ = true;
        return;
    }
    const std::string words = product_.lastWords();
    report_("The product ended " + lastEnd_ + (words.empty() ? "." : ": " + words) + " It is started again.");
    // One that ends at once must not keep the machine busy.
    if (Clock::now() - productStarted_ < 2s) std::this_thread::sleep_for(restartPause);
    ++restarts_;
    startProduct();
}

void Supervisor::watchFrames() {
    if (const std::uint32_t now = frames(); now != framesSeen_) {
        framesSeen_ = now;
        lastFrame_ = Clock::now();
    }
    if (Clock::now() - lastFrame_ < framePatience) return;
    report_("The product has shown no frame for 5 s: it hangs, and is killed.");
    product_.signal(SIGKILL);
    lastFrame_ = Clock::now();
}

// Pages that are open come back to the same port.
void Supervisor::watchPanel() {
    const auto how = panel_.takeEnd();
    if (!how) return;
    report_("The panel ended " + *how + ": " + panel_.lastWords() + " It is started again.");
    std::this_thread::sleep_for(restartPause);
    const std::string address = panelAddress();
    const auto colon = address.rfind(':');
    const int port = colon != std::string::npos ? std::atoi(address.c_str() + colon + 1) : 0;
    openPanel(static_cast<std::uint16_t>(port));
}

void Supervisor::shutDown() {
    if (!driver_) return;
    panel_.end();
    ::unlink(panelAddressFile(options_.place.folder).c_str());
    product_.signal(SIGTERM);
    driver_->releaseVsync();
    driver_->releaseClock();
    product_.end();
    serverControl_.close();
    server_.end();
    if (ours_) driver_->instance().removeNames();
    if (listening_ >= 0) {
        ::close(listening_);
        ::unlink(socketPath(options_.place.folder).c_str());
        listening_ = -1;
    }
}

}  // namespace Unit
