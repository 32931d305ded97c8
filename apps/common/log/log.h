#pragma once

#include <cstdarg>

/// The log of the unit's processes. All of them write to the kernel's log device, so that there is one time-ordered
/// log. Logging never ends the process: a line that cannot be written is reported on stderr and the program goes on.
/// Single-threaded: the line is built in a static buffer. No call changes errno.
namespace Log {

enum Level : int {
    DebugAll = 0,
    DebugMost = 1,
    DebugLight = 2,
    LogAll = 3,
    LogMost = 4,
    LogLight = 5,
    Warn = 6,
    Error = 7,
};

/// Longest line in bytes, "file:line " included, prefix, level text and line end excluded. Longer ones are cut.
inline constexpr int lineLimit = 511;

/// The process's own threshold: messages below `*threshold` are not written. Null logs everything. It is read at each
/// call, so it may point into shared memory that a service tool writes.
extern const int* threshold;

/// Whether a message of that level would be written with the process's own threshold. For callers whose arguments
/// cost something; all others leave it to `log`.
inline bool isLogged(int level) {
    return threshold == nullptr || level >= *threshold;
}

/// The file that the lines go to from the next line on, "/dev/kmsg" until the first call. Null goes back to it.
/// The text is not copied.
void setDevice(const char* path);

[[gnu::format(printf, 5, 6)]] void log(const int* threshold, int level, const char* file, int line, const char* format,
                                       ...);
[[gnu::format(printf, 5, 0)]] void vlog(const int* threshold, int level, const char* file, int line, const char* format,
                                        va_list arguments);

/// Log levels of the engine: 0 error, 1 warning, 2 important, 3 detail, 4 trace. Uses the process's own threshold.
[[gnu::format(printf, 4, 5)]] void engineLog(int engineLevel, const char* file, int line, const char* format, ...);
[[gnu::format(printf, 4, 0)]] void vengineLog(int engineLevel, const char* file, int line, const char* format,
                                              va_list arguments);

/// Writes at level Error whatever the threshold is, then throws std::runtime_error with the line ("file:line text").
[[noreturn, gnu::format(printf, 3, 4)]] void fatal(const char* file, int line, const char* format, ...);
/// The same with "TEXT: " and the text of errno.
[[noreturn]] void errnoFatal(const char* file, int line, const char* text);
/// As errnoFatal, but written at level LogLight.
[[noreturn]] void errnoFatalLog(const char* file, int line, const char* text);

/// Logs `header`, a colon, and the message on a line of its own, at level Warn. At most 1023 bytes of the message are
/// formatted; the whole is cut like any other line.
[[gnu::format(printf, 5, 6)]] void logWithHeader(const int* threshold, const char* file, int line, const char* header,
                                                 const char* format, ...);

}  // namespace Log

/// Shorthands that fill in the place of the call, and the process's own threshold.
#define TERN_LOG(level, ...) ::Log::log(::Log::threshold, level, __FILE_NAME__, __LINE__, __VA_ARGS__)
#define TERN_FATAL(...) ::Log::fatal(__FILE_NAME__, __LINE__, __VA_ARGS__)
#define TERN_ERRNO_FATAL(text) ::Log::errnoFatal(__FILE_NAME__, __LINE__, text)
