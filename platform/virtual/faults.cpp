#include "platform/virtual/faults.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace Platform::Virtual {

namespace {

constexpr auto callCountOfKinds = static_cast<std::size_t>(Call::Count);

constexpr std::array<const char*, callCountOfKinds> names = {
    "open",         "close",        "read",          "write",        "writev",     "ioctl",
    "fcntl",        "ftruncate",    "filesize",      "mmap",         "munmap",     "poll",
    "epoll_create", "epoll_ctl",    "epoll_wait",    "shm_open",     "shm_unlink", "sem_open",
    "sem_wait",     "sem_post",     "sem_close",     "socket",       "connect",    "shutdown",
    "sigaction",    "timer_create", "timer_settime", "timer_delete", "sleep"};

struct Fault {
    Call call;
    int at;  ///< count of the call that it strikes
    Verdict verdict;
};

struct Faults {
    std::array<int, callCountOfKinds> counts{};
    std::array<int, callCountOfKinds> always{};
    std::vector<Fault> pending;
};

struct ErrorName {
    const char* name;
    int value;
};
constexpr std::array<ErrorName, 18> errors = {{{"EINTR", EINTR},
                                               {"EAGAIN", EAGAIN},
                                               {"EIO", EIO},
                                               {"ENOENT", ENOENT},
                                               {"ENODEV", ENODEV},
                                               {"ENXIO", ENXIO},
                                               {"EACCES", EACCES},
                                               {"EBADF", EBADF},
                                               {"EFAULT", EFAULT},
                                               {"EINVAL", EINVAL},
                                               {"EMFILE", EMFILE},
                                               {"ENFILE", ENFILE},
                                               {"ENOMEM", ENOMEM},
                                               {"ENOSPC", ENOSPC},
                                               {"EPIPE", EPIPE},
                                               {"ECONNREFUSED", ECONNREFUSED},
                                               {"ECONNRESET", ECONNRESET},
                                               {"EPERM", EPERM}}};

/// One "kind:count:what" of TERN_FAULTS.
Fault parseFault(const std::string& text) {
    const std::size_t first = text.find(':');
    const std::size_t second = text.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos)
        throw std::runtime_error("TERN_FAULTS: \"" + text +
                                 "\" is not KIND:COUNT:ERROR, such as open:2:ENOENT or read:5:short3");
    const std::string kind = text.substr(0, first);
    const std::string what = text.substr(second + 1);
    const auto call = std::find_if(names.begin(), names.end(), [&](const char* name) { return kind == name; });
    if (call == names.end()) throw std::runtime_error("TERN_FAULTS: there is no call \"" + kind + "\"");
    Fault fault{static_cast<Call>(call - names.begin()), std::atoi(text.c_str() + first + 1), {}};
    if (what.rfind("short", 0) == 0) {
        fault.verdict.atMost = std::atoi(what.c_str() + 5);
        return fault;
    }
    const auto error =
        std::find_if(errors.begin(), errors.end(), [&](const ErrorName& one) { return what == one.name; });
    if (error == errors.end()) throw std::runtime_error("TERN_FAULTS: there is no error \"" + what + "\"");
    fault.verdict.error = error->value;
    return fault;
}

Faults& faults() {
    static Faults own = [] {
        Faults result;
        result.pending.reserve(64);
        if (const char* given = std::getenv("TERN_FAULTS")) {
            std::istringstream list(given);
            for (std::string one; std::getline(list, one, ',');)
                if (!one.empty()) result.pending.push_back(parseFault(one));
        }
        return result;
    }();
    return own;
}

}  // namespace

Verdict judge(Call call) {
    Faults& all = faults();
    const auto kind = static_cast<std::size_t>(call);
    const int count = ++all.counts[kind];
    if (all.always[kind] != 0) return {all.always[kind], -1};
    const auto struck = std::find_if(all.pending.begin(), all.pending.end(),
                                     [&](const Fault& one) { return one.call == call && one.at == count; });
    if (struck == all.pending.end()) return {};
    const Verdict verdict = struck->verdict;
    all.pending.erase(struck);
    return verdict;
}

bool fails(Call call) {
    const Verdict verdict = judge(call);
    if (verdict.error == 0) return false;
    errno = verdict.error;
    return true;
}

void failNth(Call call, int nth, int error) {
    faults().pending.push_back({call, callCount(call) + nth, {error, -1}});
}
void shortNth(Call call, int nth, int bytes) {
    faults().pending.push_back({call, callCount(call) + nth, {0, bytes}});
}
void failAlways(Call call, int error) {
    faults().always[static_cast<std::size_t>(call)] = error;
}

void clearFaults() {
    faults().pending.clear();
    faults().counts = {};
    faults().always = {};
}

int callCount(Call call) {
    return faults().counts[static_cast<std::size_t>(call)];
}
const char* callName(Call call) {
    return names[static_cast<std::size_t>(call)];
}

}  // namespace Platform::Virtual
