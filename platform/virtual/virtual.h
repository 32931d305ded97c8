// The face of the virtual twin for tests and drivers: which instance, its display, pace and faults. A program under
// test never includes this.
#pragma once

#include <cstdint>
#include <string>

#include "platform/virtual/control.h"

namespace Platform::Virtual {

// The instance. Its folder holds the display, the devices, the log and the socket; its name stands before every
// system-wide name. By default both come from the environment: TERN_INSTANCE (else "default") and TERN_INSTANCE_DIR
// (else a folder of the user's below the temporary folder).

/// Chooses the instance for this process, before its first call. The folder is made when it is missing.
void setInstance(const std::string& name, const std::string& folder);
const std::string& instanceName();
const std::string& instanceFolder();

/// Where a path of the unit lies in the instance. Below /dev, /var and /run everything does; of other paths only what
/// exists in the instance's folder, so that a test can put its own file in the place of any.
std::string mapPath(const std::string& path);
/// "/MemLens" with the instance before it.
std::string mapName(const std::string& name);

/// The shared state; made with a display of 240 x 400 at 32 bits and two buffers by whoever comes first.
ControlBlock& control();
/// Forgets the mapping, for a test that goes on to another instance.
void release();
/// Unlinks what the instance holds system-wide (memory areas, semaphore) and removes its folder.
void removeInstance();

// Input devices: byte streams in the target's record layout.
/// Makes the device that the unit knows by `path`; a second call does nothing.
void createDevice(const std::string& path);
void removeDevice(const std::string& path);

// The driver's side of lockstep.
/// Takes the clock and the vertical sync into this process's hand. The clock stands at the host's time of now.
void enterLockstep();
void leaveLockstep();
/// Moves the clock by `nanoseconds` and lets the program run one frame. False when it did not arrive in time or is
/// gone.
bool step(std::int64_t nanoseconds = framePeriod, int timeoutMs = 5000);
/// Waits until the program stands at the end of its first frame. False as above.
bool waitForArrival(std::uint32_t count, int timeoutMs = 5000);

// Faults.
enum class Call {
    Open,
    Close,
    Read,
    Write,
    Writev,
    Ioctl,
    Fcntl,
    Ftruncate,
    FileSize,
    Mmap,
    Munmap,
    Poll,
    EpollCreate,
    EpollControl,
    EpollWait,
    ShmOpen,
    ShmUnlink,
    SemOpen,
    SemWait,
    SemPost,
    SemClose,
    Socket,
    Connect,
    Shutdown,
    Sigaction,
    TimerCreate,
    TimerSettime,
    TimerDelete,
    Sleep,
    Count
};

/// The `nth` call of a kind from now on (1 is the next) fails with `error`, once. Several may be pending.
void failNth(Call call, int nth, int error);
/// The `nth` read or write from now on moves at most `bytes` bytes, once.
void shortNth(Call call, int nth, int bytes);
/// Every call of a kind fails with `error` until clearFaults; 0 ends it.
void failAlways(Call call, int error);
void clearFaults();
/// Calls of a kind since the start or clearFaults.
int callCount(Call call);

/// The word of a kind ("open"), for TERN_FAULTS and for reports.
const char* callName(Call call);

// TERN_FAULTS sets faults of a whole process: "open:2:ENOENT,read:5:short3", kind, count from the start, what happens.

}  // namespace Platform::Virtual
