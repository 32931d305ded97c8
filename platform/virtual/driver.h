#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/virtual/instance.h"

namespace Platform::Virtual {

/// A copy of what the display shows, rows from the top, 0xAARRGGBB as the product wrote them.
struct Picture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint32_t> pixels;
};

/// Holds and steps an instance's vertical sync and clock, feeds its devices and looks at its display: from the
/// product's own process (a test with the product on another thread) or from another one. A hold lasts until each
/// driver that has put it has released it or is gone, if only with its process.
class Driver {
  public:
    Driver() : Driver(Instance::current().place()) {}
    explicit Driver(const Place& place) : instance_(place) {}
    ~Driver();
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    // Vertical sync.
    void holdVsync();
    void releaseVsync();
    /// Lets the product take the next `count` vertical blanks. Steps given ahead are kept for it.
    void step(unsigned count = 1);
    /// Waits until the product has taken every step and waits for another. False when that takes longer than
    /// `milliseconds` of real time: the product is gone, stuck, or busy.
    bool awaitRest(int milliseconds = 5000);

    // Clock, in nanoseconds.
    void holdClock();                     ///< at the time it has now
    void holdClockAt(std::int64_t time);  ///< for runs that are to be the same to the last bit
    void advanceClock(std::int64_t duration);
    void releaseClock();  ///< it goes on from the time where it was held
    std::int64_t time() const;

    /// One frame of lockstep: the clock 1/60 s on, one step, and the wait for the product to come to rest.
    bool stepFrame(int milliseconds = 5000);

    // Display.
    unsigned width() const { return instance_.control().screen.xres; }
    unsigned height() const { return instance_.control().screen.yres; }
    const fb_var_screeninfo& mode() const { return instance_.control().screen; }
    /// The file of this machine that holds both buffers.
    std::string framebufferFile() const { return instance_.file("dev/fb0"); }
    unsigned shownBuffer() const;
    std::uint32_t pans() const { return instance_.control().pans; }
    std::uint32_t vsyncWaits() const { return instance_.control().vsyncWaits; }
    /// What is shown now, of a display of 32 bits a pixel; an empty picture of any other. Taken again when the
    /// product turned the page meanwhile.
    Picture shot() const;

    // Devices. Paths are the unit's own.
    /// Plugs an input device in: the product finds a stream at `path`, into which the writer's end is kept open.
    void plug(const std::string& path);
    /// The device's node goes. A product that has it open keeps an idle stream: use failCall for ENODEV.
    void unplug(const std::string& path);
    /// Bytes that the device has to say; they must fit the stream (64 KiB). False when it is not plugged or full.
    bool feed(const std::string& path, const void* data, std::size_t size);

    Instance& instance() { return instance_; }

  private:
    Instance instance_;
    int vsyncHold_ = -1;  // the locked file while this driver holds
    int clockHold_ = -1;
    std::vector<std::pair<std::string, int>> streams_;
};

}  // namespace Platform::Virtual
