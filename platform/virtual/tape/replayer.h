#pragma once

#include <sys/epoll.h>
#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/virtual/faults.h"
#include "platform/virtual/instance.h"
#include "platform/virtual/tape/event.h"
#include "platform/virtual/tape/tapefile.h"
#include "platform/virtual/tape/tiles.h"

namespace Platform::Virtual {

/// What a replay does when what it shows is not what was recorded.
enum class OnDifference { GoOn, Stop };

/// The outside world of this process, played from a recording: no server, no devices, no clock. The calls of the twin
/// ask it instead of the system. The memory areas are real objects of the instance, so that others can look at them.
///
/// A program that is not the one recorded may ask more or less often: what was not asked for waits for the next pass,
/// and who asks for more than there is finds nothing.
///
/// What it found goes into the instance folder: `replay.result`, lines "key value", and at a difference the pictures
/// `expected.raw` (when the recording has kept it) and `shown.raw`, 32-bit pixels. The process ends with the recording.
class Replayer {
  public:
    static constexpr const char* resultFile = "replay.result";
    static constexpr const char* expectedFile = "expected.raw";
    static constexpr const char* shownFile = "shown.raw";

    /// Ends the process with a message when the file cannot be used.
    Replayer(Instance& instance, const std::string& file, OnDifference onDifference);

    // Clock, in nanoseconds.
    std::int64_t time();
    void slept(std::int64_t duration) { time_ += duration; }

    /// Whether what is read from this path of the unit, "" for a descriptor without one, comes from the recording.
    static bool speaksFor(const char* path);

    // Like the calls of these names: what they return, -1 with errno when the recorded call failed.
    int open(const char* path, int flags, mode_t mode);
    int openArea(const char* name);
    /// The errno of a call that has a result only; 0 for success.
    int resultOf(Call call, const char* path);
    /// Null ends the registration.
    void registerForWait(int fd, const epoll_event* event);
    int wait(epoll_event* events, int maxEvents);
    ssize_t read(const char* path, void* buffer, std::size_t size);
    void sending(const void* data, std::size_t size);

    void shown();      ///< a pan has happened
    void endPass();    ///< the product is about to wait for the display
    void beginPass();  ///< it goes on; ends the process behind the last pass

  private:
    struct Chunk {
        enum class Kind { Bytes, Failure, Opened };
        Kind kind = Kind::Bytes;
        int error = 0;
        std::span<const std::byte> bytes;
        std::vector<std::span<const std::byte>> memory;  ///< comes in behind it
    };
    struct Path {
        std::string name;
        std::deque<Chunk> chunks;
        std::map<Call, std::deque<int>> results;
        std::map<Call, int> lastResult;
        int areaError = 0;
        std::span<std::byte> area;
        int registered = -1;
        epoll_event registration = {};
    };
    struct Ready {
        std::uint32_t id;
        std::uint32_t events;
        std::uint32_t others;
    };

    [[noreturn]] static void refuse(const std::string& problem);
    [[noreturn]] void finish(const char* how);
    void note(const std::string& line);
    Path* find(const char* name);
    Path& path(std::uint32_t id);
    void readPass();
    void play(const Event& event);
    void playArea(const Event& event);
    void playRead(const Event& event);
    void playResult(const Event& event);
    void playMode(const Event& event);
    void playContents(const Event& event) const;
    void playListing(const Event& event);
    void storeWords(std::span<const std::byte> words);
    void compare();
    void differs(const char* what);
    void savePictures() const;
    std::span<const std::uint32_t> shownPixels() const;

    Instance& instance_;
    OnDifference onDifference_;
    Tape tape_;
    std::span<const std::byte> rest_;
    std::optional<Event> next_;
    std::map<std::uint32_t, Path> paths_;
    std::map<std::string, std::uint32_t, std::less<>> ids_;
    std::vector<std::span<const std::byte>> largeChunks_;
    std::deque<Ready> ready_;
    std::deque<std::int64_t> startTimes_;
    Chunk* behind_ = nullptr;  // the read of this pass behind which memory comes in

    std::uint64_t frame_ = 0;
    std::int64_t passTime_ = 0;  // when the pass began
    std::int64_t time_ = 0;
    std::uint64_t expected_ = 0;  // fingerprints
    std::uint64_t actual_ = 0;
    bool expectedKept_ = false;
    std::optional<TiledPicture> picture_;
    std::uint64_t expectedSent_ = 0;
    std::uint64_t sent_ = 0;
    bool differed_ = false;
    enum class Checked { All, Last, None };
    Checked checked_ = Checked::All;  // a shortened recording knows what its last whole frame shows, or nothing
};

}  // namespace Platform::Virtual
