#pragma once

#include <signal.h>

#include <functional>
#include <optional>
#include <string>

#include "tests/board/guest/display.h"
#include "tests/board/guest/inputdevices.h"
#include "tests/board/guest/kernel.h"
#include "unit/ctl/childprocess.h"
#include "unit/ctl/lineconnection.h"

namespace Board {

/// The board with everything that is plugged into it, and the two programs that run there.
struct Machine {
    static constexpr const char* keys2Path = "/dev/input/by-path/platform-gpio-keys2-event";
    static constexpr const char* powerPath = "/dev/input/by-path/platform-20cc000.snvs:snvs-powerkey-event";

    Unit::ChildProcess server{"/bin/unit-server-linux", "/tmp/server.out", SIGTERM};
    Unit::ChildProcess product{"/bin/gui", "/tmp/product.out", SIGKILL};
    KernelLog log;
    std::optional<Display> display;  ///< while its driver is loaded
    std::optional<KeyDevice> keys1;
    std::optional<KeyDevice> keys2;
    std::optional<TouchPanel> touch;
    Picture landingPage;

    Machine();

    void plugKeys1();
    void plugKeys2();

    void startServer();
    /// Another driver for the display, or none: `parameters` of the module boardfb.
    void changeDisplay(const std::string& parameters);
    void removeDisplay();

    /// With a log that begins here.
    void startProduct();
    /// Waits for the landing page of a product that has just been started.
    void awaitLandingPage();
    /// Brings the landing page into the state of the picture `landingPage`: entering the page sets another one.
    void showLandingPage() { ask("set VarFuncLDD Marks"); }
    /// How the product ends by itself, or what it does instead.
    std::string awaitEnd();
    /// For the report of a failure: that the product has ended, and how. Empty while it runs.
    std::string unexpectedEnd();
    /// SIGTERM, which is to end the product with status 0.
    void expectGoodEnd();

    /// A request to the server's control socket, and its answer.
    std::string ask(const std::string& request) { return control_.ask(request); }
    /// Throws Failure, and sends the picture to the host as NAME, when the display does not come to show `expected`.
    void expectShown(const Picture& expected, const std::string& name, double seconds) const;

  private:
    Unit::LineConnection control_;
};

/// A flag of the unit, set for the length of a scope.
class SetFlag {
  public:
    SetFlag(Machine& board, std::string name) : board_(board), name_(std::move(name)) {
        board_.ask("set " + name_ + " 1");
    }
    SetFlag(const SetFlag&) = delete;
    SetFlag& operator=(const SetFlag&) = delete;
    ~SetFlag();

  private:
    Machine& board_;
    std::string name_;
};

/// One line a check on the console: "ok NAME", or "FAILED NAME: what was expected, what was found".
class Report {
  public:
    void check(const std::string& name, const std::function<void()>& body);
    /// What else there is to say when a check has failed.
    void onFailure(std::function<std::string()> tellMore) { tellMore_ = std::move(tellMore); }
    bool failed() const { return failed_; }

  private:
    std::function<std::string()> tellMore_ = [] { return std::string(); };
    bool failed_ = false;
};

// The checks, in the order in which they run.
void checkStart(Machine& board, Report& report);
void checkLateDevice(Machine& board, Report& report);
void checkFrames(Machine& board, Report& report);
void checkCost(Machine& board, Report& report);
void checkInput(Machine& board, Report& report);
void checkEnd(Machine& board, Report& report);
void checkBadInput(Machine& board, Report& report);

}  // namespace Board
