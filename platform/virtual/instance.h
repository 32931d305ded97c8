#pragma once

#include <string>

#include "platform/virtual/control.h"

namespace Platform::Virtual {

/// Which of the many units of one machine. `name` is made of letters, digits, '-', '_' and '.', at most 64 of them.
struct Place {
    std::string name;
    std::string folder;  ///< absolute

    /// TERN_INSTANCE, "default" when not set, and TERN_INSTANCE_DIR, a folder of the user's under /tmp when not set.
    static Place fromEnvironment();
    /// The place of that name in the user's folder under /tmp.
    static Place named(const std::string& name);
};

/// One process's view of an instance: its folder, which is the root of the unit's own file tree, the prefix of its
/// system-wide names, and the mapped control block. Whoever comes first creates what is missing.
/// What cannot be used (a foreign folder, another version) ends the process with a message on stderr.
class Instance {
  public:
    explicit Instance(Place place);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    const Place& place() const { return place_; }
    ControlBlock& control() const { return *control_; }
    /// Whoever holds the vertical sync or the clock keeps a shared lock on the file, which ends with it.
    static constexpr const char* vsyncLock = "vsync.lock";
    static constexpr const char* clockLock = "clock.lock";
    std::string file(const char* name) const { return place_.folder + "/" + name; }

    static constexpr std::size_t pathLimit = 1024;
    /// The file behind a path of the unit: an absolute path lies in the folder, a relative one and one that is
    /// already inside the folder stay. Null with ENAMETOOLONG when it is too long. Allocates nothing.
    const char* mapPath(const char* path, char (&buffer)[pathLimit]) const;

    static constexpr std::size_t nameLimit = 256;
    /// The system's name behind a name of the unit ("/MemStatic"). Null with ENAMETOOLONG or EINVAL.
    const char* mapName(const char* name, char (&buffer)[nameLimit]) const;

    /// Gives the display another mode and clears it. Not while the product has it open.
    void setScreen(unsigned width, unsigned height, unsigned bitsPerPixel);
    /// Lifts each hold that no living driver has put, and wakes who waits for it.
    void liftAbandonedHolds() const;
    /// Removes every shared name of the instance: what a killed server has left behind.
    void removeNames() const;
    /// Removes the folder and every shared name of the instance.
    void remove() const;

    static Instance& current();  ///< of this process; the first call settles it from the environment
    static void use(Place place);

  private:
    void openControl();
    void createDisplay();

    Place place_;
    std::string prefix_;
    ControlBlock* control_ = nullptr;
    int vsyncLock_ = -1;
    int clockLock_ = -1;
};

}  // namespace Platform::Virtual
