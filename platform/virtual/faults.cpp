#include "platform/virtual/faults.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string_view>
#include <vector>

#include "platform/virtual/strike.h"

namespace Platform::Virtual {

namespace {

constexpr std::size_t kinds = static_cast<std::size_t>(Call::Count_);

constexpr std::array<const char*, kinds> callNames = {
    "open",         "close",     "read",       "write",       "writev",       "ioctl",       "fcntl",
    "ftruncate",    "fileSize",  "mmap",       "munmap",      "unlinkPath",   "poll",        "epollCreate",
    "epollControl", "epollWait", "schedYield", "shmOpen",     "shmUnlink",    "semOpen",     "semWait",
    "semPost",      "semClose",  "semUnlink",  "socket",      "connect",      "bind",        "listen",
    "accept",       "shutdown",  "sigaction",  "timerCreate", "timerSettime", "timerDelete", "sleep"};
static_assert(callNames.back() != nullptr);

enum class Effect { Fail, Shorten, Answer, Run };

struct Fault {
    Call call = Call::Open;
    Effect effect = Effect::Fail;
    long value = 0;  // errno, bytes or result
    unsigned nth = 1;
    bool andLater = false;
    std::string path;
    unsigned long request = 0;
    std::function<void()> action;
    unsigned seen = 0;

    bool hits(Call called, const char* on, unsigned long asked) {
        if (called != call || (!path.empty() && path != on) || (request != 0 && request != asked)) return false;
        ++seen;
        return seen == nth || (andLater && seen > nth);
    }
};

using Counts = std::array<std::atomic<unsigned>, kinds>;

struct Table {
    std::mutex mutex;
    std::vector<Fault> faults;
    std::atomic<bool> armed = false;
    Counts own = {};
    Counts* counts = &own;

    Table() {
        if (const char* path = std::getenv("TERN_CALL_COUNTS")) countIn(path);
        const char* text = std::getenv("TERN_FAULTS");
        std::string error;
        if (text == nullptr || set(text, error)) return;
        std::fprintf(stderr, "TERN_FAULTS: %s\n", error.c_str());
        std::_Exit(2);
    }

    void add(Fault fault) {
        const std::lock_guard lock(mutex);
        faults.push_back(std::move(fault));
        armed = true;
    }

    bool set(const std::string& text, std::string& error);
    void countIn(const char* path);
};

Table& table() {
    static Table table;
    return table;
}

Fault makeFault(Call call, Effect effect, long value, const Where& where) {
    Fault fault;
    fault.call = call;
    fault.effect = effect;
    fault.value = value;
    fault.nth = where.nth;
    fault.andLater = where.andLater;
    fault.path = where.path;
    fault.request = where.request;
    return fault;
}

template <typename Number>
bool parseNumber(std::string_view text, Number& number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool parseCall(std::string_view text, Fault& fault) {
    const auto at = text.find('@');
    if (at != text.npos) fault.path = text.substr(at + 1);
    const auto name = text.substr(0, at);
    for (std::size_t i = 0; i < kinds; ++i)
        if (name == callNames[i]) {
            fault.call = static_cast<Call>(i);
            return true;
        }
    return false;
}

bool parseCount(std::string_view text, Fault& fault) {
    fault.andLater = text.ends_with('+');
    if (fault.andLater) text.remove_suffix(1);
    return parseNumber(text, fault.nth) && fault.nth > 0;
}

bool parseErrno(std::string_view name, long& value) {
    constexpr int highest = 133;
    for (int number = 1; number <= highest; ++number) {
        const char* known = strerrorname_np(number);
        if (known != nullptr && name == known) {
            value = number;
            return true;
        }
    }
    return false;
}

bool parseEffect(std::string_view text, Fault& fault) {
    const auto equals = text.find('=');
    if (equals == text.npos) return parseErrno(text, fault.value);
    const auto word = text.substr(0, equals);
    if (word != "short" && word != "answer") return false;
    fault.effect = word == "short" ? Effect::Shorten : Effect::Answer;
    return parseNumber(text.substr(equals + 1), fault.value) && (word == "answer" || fault.value >= 0);
}

// The effect stands behind the last colon and the count behind the one before: a path may hold colons itself.
bool parseFault(std::string_view text, Fault& fault, std::string& error) {
    const auto last = text.rfind(':');
    const auto middle = last == text.npos || last == 0 ? text.npos : text.rfind(':', last - 1);
    const char* wrong = nullptr;
    if (middle == text.npos)
        wrong = "is not CALL[@PATH]:NTH[+]:EFFECT";
    else if (!parseCall(text.substr(0, middle), fault))
        wrong = "names no call of the seam";
    else if (!parseCount(text.substr(middle + 1, last - middle - 1), fault))
        wrong = "counts from 1, with a '+' behind the number for each later one too";
    else if (!parseEffect(text.substr(last + 1), fault))
        wrong = "ends in no errno, short=BYTES or answer=VALUE";
    if (wrong != nullptr) error = "\"" + std::string(text) + "\" " + wrong;
    return wrong == nullptr;
}

// A file of its own for each program of a unit, since they share the environment.
void Table::countIn(const char* path) {
    const std::string file = std::string(path) + "." + program_invocation_short_name;
    const int fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    void* start = MAP_FAILED;
    if (fd >= 0 && ::ftruncate(fd, sizeof(Counts)) == 0)
        start = ::mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (start != MAP_FAILED)
        counts = new (start) Counts{};
    else
        std::fprintf(stderr, "TERN_CALL_COUNTS: %s cannot be made, so nobody else sees the counts: %s\n", file.c_str(),
                     std::strerror(errno));
    if (fd >= 0) ::close(fd);
}

bool Table::set(const std::string& text, std::string& error) {
    std::vector<Fault> parsed;
    for (std::string_view rest = text; !rest.empty();) {
        const auto end = rest.find(';');
        const auto one = rest.substr(0, end);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        if (one.empty()) continue;
        if (!parseFault(one, parsed.emplace_back(), error)) return false;
    }
    for (auto& fault : parsed) add(std::move(fault));
    return true;
}

}  // namespace

void failCall(Call call, int error, Where where) {
    table().add(makeFault(call, Effect::Fail, error, where));
}

void shortenCall(Call call, std::size_t bytes, Where where) {
    table().add(makeFault(call, Effect::Shorten, static_cast<long>(bytes), where));
}

void answerCall(Call call, long value, Where where) {
    table().add(makeFault(call, Effect::Answer, value, where));
}

void onCall(Call call, std::function<void()> action, Where where) {
    Fault fault = makeFault(call, Effect::Run, 0, where);
    fault.action = std::move(action);
    table().add(std::move(fault));
}

void clearFaults() {
    const std::lock_guard lock(table().mutex);
    table().armed = false;
    table().faults.clear();
}

unsigned callCount(Call call) {
    return (*table().counts)[static_cast<std::size_t>(call)];
}

bool setFaults(const std::string& text, std::string& error) {
    return table().set(text, error);
}

Verdict strike(Call call, const char* path, unsigned long request) {
    Table& all = table();
    (*all.counts)[static_cast<std::size_t>(call)].fetch_add(1, std::memory_order_relaxed);
    Verdict verdict;
    if (!all.armed.load(std::memory_order_relaxed)) return verdict;

    std::vector<std::function<void()>> actions;
    int error = 0;
    {
        const std::lock_guard lock(all.mutex);
        for (auto& fault : all.faults) {
            if (!fault.hits(call, path, request)) continue;
            if (fault.effect == Effect::Run) actions.push_back(fault.action);
            if (fault.effect == Effect::Shorten) verdict.limit = static_cast<std::size_t>(fault.value);
            if (fault.effect != Effect::Fail && fault.effect != Effect::Answer) continue;
            verdict.instead = true;
            verdict.value = fault.effect == Effect::Fail ? -1 : fault.value;
            error = fault.effect == Effect::Fail ? static_cast<int>(fault.value) : 0;
        }
    }
    for (const auto& action : actions) action();  // outside the lock: an action may use the seam
    if (error != 0) errno = error;
    return verdict;
}

}  // namespace Platform::Virtual
