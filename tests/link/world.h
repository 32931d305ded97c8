#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "apps/common/event/eventpoll.h"
#include "platform/virtual/virtual.h"

using Platform::Virtual::Call;

/// A virtual instance of the machine for the length of a test: own names and devices, a clock that stands still until
/// it is stepped, faults on demand, and a log that can be read back.
class World {
  public:
    World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World();

    void step(std::int64_t nanoseconds) { driver.advanceClock(nanoseconds); }

    std::string logText() const;
    std::string lastLogLine() const;
    /// The lines without prefix, level and place.
    std::vector<std::string> logTexts() const;
    /// The text of the std::runtime_error that `operation` throws.
    static std::string fatalTextOf(const std::function<void()>& operation);

    /// Takes the alarm that a timer may have left: the flag is the process's and would end a wait of the next test.
    static void takeAlarm(EventPoll& poll);

  private:
    std::vector<std::string> logLines() const;

    Platform::Virtual::TemporaryInstance instance_;

  public:
    Platform::Virtual::Driver driver;
};

class WorldTest : public testing::Test, public World {};
