#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "unit/server/areas.h"
#include "unit/server/broker.h"
#include "unit/server/store.h"

namespace Unit {

/// Ways in which a server can go wrong, for tests of the product.
class Hostile {
  public:
    Hostile(Areas& areas, Broker& broker, Store& store) : areas_(areas), broker_(broker), store_(store) {}

    /// One mode with its arguments, as in `help`; "off" ends all that can be ended. False with the reason in `problem`.
    bool set(const std::string& text, std::string& problem);
    void tick();

    /// Whether a restart was asked for, and for how many ticks the server is to stay away.
    bool takeRestart(unsigned& ticks);

    static constexpr const char* help =
        "off | split BYTES | storm COUNT | unknown | deaf | silent | torn [NAME] | truncate AREA [BYTES] | "
        "header AREA WORD | restart [TICKS]";

  private:
    void begin(const std::string& text);
    void off();
    void split(unsigned tail);
    void tear(const std::string& name);
    void tear(const Cell& text);
    void tearAll();
    void sendStorm();
    void sendUnknown();

    Areas& areas_;
    Broker& broker_;
    Store& store_;
    unsigned storm_ = 0;
    unsigned stormAt_ = 0;
    bool unknown_ = false;
    bool restart_ = false;
    unsigned restartTicks_ = 0;
};

}  // namespace Unit
