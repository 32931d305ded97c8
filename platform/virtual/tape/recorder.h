#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/virtual/faults.h"
#include "platform/virtual/instance.h"
#include "platform/virtual/tape/areacopies.h"
#include "platform/virtual/tape/event.h"
#include "platform/virtual/tape/tapefile.h"
#include "platform/virtual/tape/tiles.h"

namespace Platform::Virtual {

/// Writes down what reaches this process through the seam, and a fingerprint of each picture that it shows. The calls
/// of the twin tell it what they did.
///
/// While it lives, a pass (from one display wait to the next) sees one time: the clock of its beginning, and what
/// it slept; only the start, before the first wait, sees the clock itself. A pass sees the memory areas in copies that
/// are brought up to date when a pass begins and behind each read from the server, since a notice tells of memory that
/// was written before.
///
/// Pictures are kept, not only their fingerprints, as long as the file is below a size that grows with the time
/// recorded: 1 MiB and 4 KiB a second. At 256 MiB it stops writing; the product goes on.
class Recorder {
  public:
    /// A file that cannot be made is told on stderr; the product runs without a recording then.
    Recorder(Instance& instance, const std::string& file, const std::string& about);
    ~Recorder();

    // Clock, in nanoseconds.
    std::int64_t time();  ///< what the product sees now
    void slept(std::int64_t duration);

    // What a call did: descriptors are negative and `good` is false when it failed, with errno, which is kept. Paths
    // and names are the unit's own.
    void opened(const char* path, int fd);
    /// A folder was opened: its names are taken down, the position in `fd` stays.
    void listed(const char* path, int fd);
    void areaOpened(const char* name, int fd);
    /// The copy that the product works on in place of `shared`, which is taken over; `shared` itself when no copy can
    /// be made.
    void* mapped(const char* name, void* shared, std::size_t size);
    /// False when `address` is no such copy; else both mappings are gone.
    bool unmapped(void* address);
    void ended(Call call, const char* path, bool good);
    /// One of the descriptors that a wait found ready; `others` of the same wait follow.
    void waited(const char* path, std::uint32_t events, int others);
    /// `result`: the bytes read, or negative.
    void read(const char* path, const void* data, ssize_t result);
    /// Before the product speaks to the server: what it wrote must be there.
    void sending(const void* data, std::size_t size);
    void framebufferOpened();

    void shown();      ///< a pan has happened
    void endPass();    ///< the product is about to wait for the display
    void beginPass();  ///< it goes on

  private:
    struct Path {
        std::uint32_t id;
        std::map<Call, int> last;  // the errno of its last call of a kind, which is told when it changes
    };

    Path& path(const std::string& name);
    void add(const Event& event);
    void exchangeMemory();
    bool picturesAffordable() const;
    void result(Call call, const char* name, int error);

    Instance& instance_;
    TapeWriter writer_;
    std::map<std::string, Path> paths_;
    AreaCopies areas_;
    std::map<std::uint64_t, std::uint64_t> chunks_;  // fingerprint to number
    std::optional<TiledPicture> picture_;            // the last one that was kept
    const std::uint32_t* framebuffer_ = nullptr;
    std::size_t framebufferSize_ = 0;
    std::uint64_t fingerprint_ = 0;
    std::uint64_t sent_ = 0;
    bool starting_ = true;
    std::int64_t started_;
    std::int64_t time_;      // of this pass
    std::int64_t lastTime_;  // when the pass before began
    unsigned passesInBlock_ = 0;
    std::vector<std::byte> event_;
    std::vector<std::byte> scratch_;
};

}  // namespace Platform::Virtual
