#include "apps/common/log/log.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/uio.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "platform/system.h"

namespace Log {

const int* threshold = nullptr;

namespace {

constexpr std::size_t levelWidth = 12;
constexpr std::size_t prefixWidth = 22;

constexpr char levelTexts[][levelWidth + 1] = {
    "DebugAll    ", "DebugMost   ", "DebugLight  ", "LogAll      ",
    "LogMost     ", "LogLight    ", "Warn        ", "Error       ",
};
static_assert(std::size(levelTexts) == Error + 1);

constexpr int engineLevels[] = {Error, Warn, LogLight, DebugLight, LogLight};
constexpr int engineLevelBeyond = DebugLight;

constexpr const char* defaultDevice = "/dev/kmsg";

struct Device {
    const char* path = defaultDevice;
    int fd = -1;
    int openError = 0;
    bool opened = false;
};

constinit Device device;
constinit char lineText[lineLimit + 1] = {};

struct KeepErrno {
    int value = errno;
    KeepErrno() = default;
    KeepErrno(const KeepErrno&) = delete;
    KeepErrno& operator=(const KeepErrno&) = delete;
    ~KeepErrno() { errno = value; }
};

const char* programPrefix() {
    static char text[prefixWidth + 1] = {};
    if (text[0] == '\0') std::snprintf(text, sizeof text, "%20s  ", program_invocation_short_name);
    return text;
}

void openDevice() {
    device.opened = true;
    do {
        device.fd = Platform::open(device.path, O_WRONLY | O_CLOEXEC);
    } while (device.fd < 0 && errno == EINTR);
    device.openError = device.fd < 0 ? errno : 0;
}

const char* baseName(const char* file) {
    const char* slash = std::strrchr(file, '/');
    return slash != nullptr ? slash + 1 : file;
}

iovec part(const char* text) {
    return {const_cast<char*>(text), std::strlen(text)};
}

bool passes(const int* limit, int level) {
    return limit == nullptr || level >= *limit;
}

int clampLevel(int level) {
    return level < DebugAll ? DebugAll : level > Error ? Error : level;
}

int fromEngineLevel(int level) {
    const auto index = static_cast<std::size_t>(level);
    return index < std::size(engineLevels) ? engineLevels[index] : engineLevelBeyond;
}

[[gnu::format(printf, 3, 0)]] void formatLine(const char* file, int line, const char* format, va_list arguments) {
    const int head = std::snprintf(lineText, sizeof lineText, "%20s:%4i ", baseName(file), line);
    if (head < 0 || head > lineLimit) return;
    std::vsnprintf(lineText + head, sizeof lineText - static_cast<std::size_t>(head), format, arguments);
}

void writeLine(int level) {
    if (!device.opened) openDevice();
    const iovec parts[] = {part(programPrefix()), part(levelTexts[clampLevel(level)]), part(lineText), part("\n")};
    int error = device.openError;
    if (device.fd >= 0) {
        ssize_t written;
        do {
            written = Platform::writev(device.fd, parts, static_cast<int>(std::size(parts)));
        } while (written < 0 && errno == EINTR);
        error = written < 0 ? errno : 0;
    }
    if (error != 0) std::fprintf(stderr, "FATAL: Logging: Write failed: %s\n", std::strerror(error));
}

[[gnu::format(printf, 4, 5)]] void formatAndWrite(int level, const char* file, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    formatLine(file, line, format, arguments);
    va_end(arguments);
    writeLine(level);
}

}  // namespace

void setDevice(const char* path) {
    const KeepErrno keep;
    if (device.fd >= 0) Platform::close(device.fd);
    device = Device{};
    if (path != nullptr) device.path = path;
}

void vlog(const int* limit, int level, const char* file, int line, const char* format, va_list arguments) {
    if (!passes(limit, level)) return;
    const KeepErrno keep;
    formatLine(file, line, format, arguments);
    writeLine(level);
}

void log(const int* limit, int level, const char* file, int line, const char* format, ...) {
    if (!passes(limit, level)) return;
    va_list arguments;
    va_start(arguments, format);
    vlog(limit, level, file, line, format, arguments);
    va_end(arguments);
}

void vengineLog(int engineLevel, const char* file, int line, const char* format, va_list arguments) {
    vlog(threshold, fromEngineLevel(engineLevel), file, line, format, arguments);
}

void engineLog(int engineLevel, const char* file, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vengineLog(engineLevel, file, line, format, arguments);
    va_end(arguments);
}

void fatal(const char* file, int line, const char* format, ...) {
    const KeepErrno keep;
    va_list arguments;
    va_start(arguments, format);
    formatLine(file, line, format, arguments);
    va_end(arguments);
    writeLine(Error);
    throw std::runtime_error(lineText);
}

void errnoFatal(const char* file, int line, const char* text) {
    const KeepErrno keep;
    formatAndWrite(Error, file, line, "%s: %s", text, std::strerror(errno));
    throw std::runtime_error(lineText);
}

void errnoFatalLog(const char* file, int line, const char* text) {
    const KeepErrno keep;
    formatAndWrite(LogLight, file, line, "%s: %s", text, std::strerror(errno));
    throw std::runtime_error(lineText);
}

void logWithHeader(const int* limit, const char* file, int line, const char* header, const char* format, ...) {
    if (!passes(limit, Warn)) return;
    char message[1024];
    char text[2048];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    std::snprintf(text, sizeof text, "%s:\n%s", header, message);
    log(limit, Warn, file, line, "%s", text);
}

}  // namespace Log
