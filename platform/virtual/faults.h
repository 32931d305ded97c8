#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace Platform::Virtual {

/// The calls of the seam, by name.
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
    UnlinkPath,
    Poll,
    EpollCreate,
    EpollControl,
    EpollWait,
    SchedYield,
    ShmOpen,
    ShmUnlink,
    SemOpen,
    SemWait,
    SemPost,
    SemClose,
    SemUnlink,
    Socket,
    Connect,
    Bind,
    Listen,
    Accept,
    Shutdown,
    Sigaction,
    TimerCreate,
    TimerSettime,
    TimerDelete,
    Sleep,
    Count_
};

/// Which calls of a kind are meant, counted from the moment when the fault is set.
struct Where {
    unsigned nth = 1;           ///< the first one is 1
    bool andLater = false;      ///< that one and each one after it
    const char* path = "";      ///< only on this path or name of the unit, or on a descriptor opened from it; "" is any
    unsigned long request = 0;  ///< only this ioctl request; 0 is any
};

// Faults of this process. They last until clearFaults().
/// The call does nothing and fails with `error`.
void failCall(Call call, int error, Where where = {});
/// A read, write or writev moves at most `bytes`. The rest stays for the next call.
void shortenCall(Call call, std::size_t bytes, Where where = {});
/// The call does nothing and returns `value`: 0 for an mmap is a null result.
void answerCall(Call call, long value, Where where = {});
/// Runs `action` before the call, which then goes its way. The action may use the seam.
void onCall(Call call, std::function<void()> action, Where where = {});
void clearFaults();

/// Calls of a kind so far in this process, failed ones included.
unsigned callCount(Call call);

/// Sets the faults that `text` lists, as TERN_FAULTS does for a whole process: "CALL[@PATH]:NTH[+]:EFFECT", several
/// with ';' between. EFFECT is an errno's name, "short=BYTES" or "answer=VALUE"; '+' means each later one too.
/// For instance "open@/dev/fb0:1:EACCES;read:3+:short=7". False with the reason in `error`; then none is set.
bool setFaults(const std::string& text, std::string& error);

}  // namespace Platform::Virtual
