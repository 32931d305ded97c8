#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/virtual/driver.h"
#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"

/// The shipping program over the virtual twin, with a stub server, in lockstep: nothing moves but by `step`.
class Product {
  public:
    Product();
    ~Product();

    /// Starts the program; `stepsToFirstPage` frames later it stands on its first page.
    void start(std::vector<std::string> arguments = {}, std::vector<std::string> environment = {});
    /// Lets `frames` passes run. False when the program does not come to rest.
    bool step(int frames = 1);
    /// Steps until the log holds `text`; false after `frames`.
    bool stepUntilLogged(const std::string& text, int frames = 300);
    /// Ends it by SIGTERM and answers its exit status, -1 when a signal or a time-out ended it.
    int stop();
    /// Waits for its own end.
    int waitForEnd();

    std::string log() const;
    std::uint32_t pixel(unsigned x, unsigned y) const;

    StubServer& server() { return *server_; }
    Platform::Virtual::Driver& driver() { return *driver_; }

  private:
    Platform::Virtual::TemporaryInstance instance_;
    std::unique_ptr<Platform::Virtual::Driver> driver_;
    std::unique_ptr<StubServer> server_;
    pid_t process_ = -1;
};
