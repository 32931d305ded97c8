#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/virtual/driver.h"
#include "unit/ctl/childprocess.h"
#include "unit/ctl/inputdevices.h"
#include "unit/ctl/lineconnection.h"
#include "unit/ctl/lockfile.h"
#include "unit/ctl/productlog.h"

namespace Unit {

enum class Pacing { Free, Lockstep };
enum class ServerUse { Own, Foreign };
enum class Record { On, Off };
enum class PanelUse { None, Own };

struct UnitOptions {
    Platform::Virtual::Place place;
    std::string scene;     ///< absolute path; empty for what the unit was left with (in lockstep: as from the factory)
    std::string hardware;  ///< absolute path of the scene that says what is connected where `scene` is empty
    Pacing pacing = Pacing::Free;
    ServerUse server = ServerUse::Own;
    Record record = Record::On;  ///< what reaches the product, in the instance folder
    std::string page;            ///< that the product starts with; empty for the one of its model
    PanelUse panel = PanelUse::None;
    std::uint16_t panelPort = 0;  ///< 0: one that is free
    std::string tape = {};        ///< recording to be played instead of having a server; only in lockstep
    unsigned tapeFrames = 0;      ///< how many of its frames
    std::string programs;         ///< folder of unit-server, gui-virtual and unit-panel
};

/// One running unit: starts the server and the product, holds display and clock in lockstep, starts again what ends,
/// answers the command line, and takes everything away at its end. One thread.
///
/// In free run a product that shows no frame for 5 s is killed and started again.
class Supervisor {
  public:
    using Report = std::function<void(const std::string& line)>;

    /// Throws Problem when a unit of that name runs already. `report` is told whatever goes wrong later.
    Supervisor(UnitOptions options, Report report);
    ~Supervisor();
    Supervisor(const Supervisor&) = delete;
    Supervisor& operator=(const Supervisor&) = delete;

    /// Returns when the product has subscribed and drawn its first page. Throws Problem when that fails.
    void start();
    /// Until "stop", SIGINT, SIGTERM or SIGHUP.
    void run();
    /// In lockstep: `frames` passes. Throws Problem when the product ends or does not come to rest.
    void step(unsigned frames);

    /// Where the panel is to be seen, "http://127.0.0.1:PORT/". Starts it when none runs, on `port` (0: one that is
    /// free). Throws Problem when it does not come up.
    std::string openPanel(std::uint16_t port);

    Platform::Virtual::Driver& driver() { return *driver_; }
    /// Starts the product again, with `page`, or as it is when that is empty. Throws Problem when there is no such
    /// page, and then leaves the product alone, or when it does not come up.
    void goTo(const std::string& page);
    /// Asks the unit's own server. Throws Problem.
    std::string askServer(const std::string& line) { return serverControl_.ask(line); }
    const ProductLog& log() const { return log_; }

    /// Where the supervisor of the unit in `folder` listens.
    static std::string socketPath(const std::string& folder) { return folder + "/var/volatile/unitctl.socket"; }
    static std::string serverSocketPath(const std::string& folder) {
        return folder + "/var/volatile/unit-control.socket";
    }
    /// Held while the unit runs.
    static std::string lockPath(const std::string& folder) { return folder + "/unitctl.lock"; }
    /// Held by the unit's server, whoever has started it.
    static std::string serverLockPath(const std::string& folder) { return folder + "/unit/server.lock"; }
    /// Holds the panel's address while it runs.
    static std::string panelAddressFile(const std::string& folder) { return folder + "/panel.address"; }
    /// Signals ask for the end instead of ending the process. Once, before the first supervisor.
    static void catchSignals();

  private:
    using Clock = std::chrono::steady_clock;

    bool isReplay() const { return !options_.tape.empty(); }
    void takeLock();
    void checkServer() const;
    void prepareInstance();
    void installBootLogo() const;
    void startServer();
    void awaitServer();
    void startProduct();
    void beginProduct();
    void awaitFirstPage();
    void settle();
    void awaitRest();
    bool serverAnswers(const std::string& line);
    void stepFrame();
    void listen();
    void serveClient();
    std::string answer(const std::string& line);
    std::string status() const;
    void watchServer();
    void watchProduct();
    std::optional<std::string> takeProductEnd();
    void watchFrames();
    void watchPanel();
    std::string panelAddress() const;
    void shutDown();
    std::uint32_t frames() const;

    UnitOptions options_;
    Report report_;
    LockFile lock_;
    int listening_ = -1;
    int stopClient_ = -1;
    bool stop_ = false;
    bool ours_ = false;  ///< the unit's shared names
    std::unique_ptr<Platform::Virtual::Driver> driver_;
    std::unique_ptr<InputDevices> devices_;
    ProductLog log_;
    ChildProcess server_;
    ChildProcess product_;
    ChildProcess panel_;
    LineConnection serverControl_;
    Clock::time_point productStarted_;
    Clock::time_point lastFrame_;
    std::uint32_t framesSeen_ = 0;
    std::uint32_t framesBefore_ = 0;  ///< of earlier units in the same folder
    unsigned restarts_ = 0;
    std::string lastEnd_;
};

}  // namespace Unit
