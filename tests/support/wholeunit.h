#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/virtual/driver.h"
#include "unit/ctl/inputdevices.h"

class StubServer;

namespace Unit {
class Simulation;
}

/// The product's own objects and the stand-in server's modules in this process, in lockstep: a frame costs no switch of
/// a process, so that tests can live through hours of the unit and benchmarks measure a pass alone. The model is
/// static, so there is one at a time, and what its pages and variables hold lives on in the next.
class WholeUnit {
  public:
    /// Switched on with the factory's settings and `scene`, the name of a file in unit/scenes ("" for none); stands
    /// before its first pass.
    explicit WholeUnit(const std::string& scene = "");
    WholeUnit(const WholeUnit&) = delete;
    WholeUnit& operator=(const WholeUnit&) = delete;
    ~WholeUnit();

    /// A 60th of a second: the modules read what the product has sent, live on and answer, then the product runs a
    /// pass.
    void frame();
    void frames(int count);
    /// Until no frame has drawn anything for `quiet` frames, at most 600.
    void settle(int quiet = 10);

    /// Switched off and on with another scene, while the product goes on.
    void scene(const std::string& name);
    /// What a person does with the hardware, `value` as in JSON: act("hands", "knob", "0.5").
    void act(const std::string& module, const std::string& setting, const std::string& value);

    // Values by the names of the catalogue, in the form in which a person writes them.
    std::string get(const std::string& name) const;
    /// Stores, and tells the product and the modules.
    void set(const std::string& name, const std::string& value);
    void poke(const std::string& name, const std::string& value);  ///< stores only

    // Input, and what it does a frame later.
    Unit::InputDevices& devices();
    void key(const std::string& name, bool down);
    void press(const std::string& name, int frames = 6);
    void touch(int x, int y, int frames = 6);

    /// The active page's name, "" without one.
    std::string page() const;
    /// In quarter turns.
    std::uint32_t rotation() const;
    Platform::Virtual::Picture shot() const;
    /// What drawing the whole page anew gives, without showing it.
    Platform::Virtual::Picture redrawn();
    /// Frames that were drawn since the start.
    std::uint32_t pans() const;

    Platform::Virtual::Driver& driver();
    Unit::Simulation& simulation();
    StubServer& server();
    /// One pass of the product alone.
    void pass();

  private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};
