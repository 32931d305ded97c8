#include "tests/board/guest/kernel.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/reboot.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

#include "tests/board/guest/expect.h"

namespace Board {

namespace {

void require(bool done, const std::string& what) {
    expect(done, what + ": " + std::strerror(errno));
}

void mountAt(const char* type, const char* folder) {
    ::mkdir(folder, 0755);
    // The kernel may have mounted the devices already.
    require(::mount(type, folder, type, 0, nullptr) == 0 || errno == EBUSY, std::string("mount of ") + folder);
}

}  // namespace

void mountFileSystems() {
    mountAt("proc", "/proc");
    mountAt("sysfs", "/sys");
    mountAt("devtmpfs", "/dev");
    mountAt("tmpfs", "/dev/shm");
    mountAt("tmpfs", "/tmp");
    ::mkdir("/var", 0755);
    mountAt("tmpfs", "/var/volatile");
}

void loadModule(const std::string& name, const std::string& parameters) {
    const int fd = ::open(("/modules/" + name + ".ko").c_str(), O_RDONLY | O_CLOEXEC);
    require(fd >= 0, "module " + name);
    const long result = ::syscall(SYS_finit_module, fd, parameters.c_str(), 0);
    ::close(fd);
    require(result == 0, "loading of module " + name + " " + parameters);
}

void unloadModule(const std::string& name) {
    // Who has just ended may hold it for a moment.
    const bool gone = waitUntil(2, [&] { return ::syscall(SYS_delete_module, name.c_str(), O_NONBLOCK) == 0; });
    require(gone, "unloading of module " + name);
}

unsigned long long moduleNumber(const std::string& module, const std::string& parameter) {
    std::ifstream file("/sys/module/" + module + "/parameters/" + parameter);
    unsigned long long number = 0;
    expect(static_cast<bool>(file >> number), "parameter " + parameter + " of module " + module + " is not there");
    return number;
}

void powerOff() {
    ::sync();
    ::reboot(RB_POWER_OFF);
    ::_exit(1);
}

KernelLog::KernelLog() : fd_(::open("/dev/kmsg", O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
    require(fd_ >= 0, "the kernel's log");
}

KernelLog::~KernelLog() {
    ::close(fd_);
}

void KernelLog::forget() {
    ::lseek(fd_, 0, SEEK_END);
    text_.clear();
}

/// A record a read: "priority,number,time,flags;line".
void KernelLog::readAll() {
    char record[2048];
    for (;;) {
        const ssize_t size = ::read(fd_, record, sizeof record);
        if (size < 0 && errno == EPIPE) continue;  // overwritten before it was read
        if (size <= 0) return;
        const std::string line(record, static_cast<std::size_t>(size));
        text_ += line.substr(line.find(';') + 1);
    }
}

bool KernelLog::has(const std::string& text) {
    readAll();
    return text_.find(text) != std::string::npos;
}

void KernelLog::await(const std::string& text, double seconds) {
    const bool came = waitUntil(seconds, [&] { return has(text); });
    expect(came, "expected \"" + text + "\" in the log, found: " + lastLines(4));
}

std::string KernelLog::lastLines(std::size_t count) {
    readAll();
    std::size_t start = text_.size();
    for (std::size_t i = 0; i <= count && start != std::string::npos && start > 0; ++i)
        start = text_.rfind('\n', start - 1);
    std::string lines = text_.substr(start == std::string::npos ? 0 : start);
    for (char& c : lines)
        if (c == '\n') c = '|';
    return lines;
}

}  // namespace Board
