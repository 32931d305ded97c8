#pragma once

#include "unit/server/module.h"

namespace Unit {

/// Date and time. While the pages show the time (VarDateUpdate) the clock is read out; while they do not, what they
/// write sets it.
class Clock final : public Module {
  public:
    /// `wallClock`: begin with the machine's time, otherwise at the same moment each time.
    Clock(Store& values, bool wallClock);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void show();
    void adopt();
    void adopt12();
    void chooseContinent();
    void chooseCountry();
    void listZones();

    Number year_, month_, day_, hour_, hour12_, minute_, amPm_, continents_, countries_;
    Flag update_, daylight_;
    Text zone_, continent_, country_;
    Column continentNames_, countryNames_;
    bool wallClock_;
    std::int64_t seconds_ = 0;  ///< of local time since 1970
    std::int64_t rest_ = 0;     ///< nanoseconds
};

}  // namespace Unit
