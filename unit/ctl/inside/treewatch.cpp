#include "unit/ctl/inside/treewatch.h"

#include <errno.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "unit/ctl/problem.h"

namespace Unit {

namespace fs = std::filesystem;

namespace {

constexpr int settling = 60;  // ms without another change

/// Backups and swap files of editors.
bool isSource(const std::string& name) {
    return !name.empty() && name.front() != '.' && name.front() != '#' && name.back() != '~';
}

}  // namespace

TreeWatch::TreeWatch(const std::string& folder) : fd_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (fd_ < 0) throw Problem(std::string("Files cannot be watched: ") + std::strerror(errno));
    add(folder);
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
        if (entry.is_directory(ignored)) add(entry.path().string());
}

TreeWatch::~TreeWatch() {
    ::close(fd_);
}

void TreeWatch::add(const std::string& folder) {
    const int watch =
        ::inotify_add_watch(fd_, folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE);
    if (watch < 0) throw Problem(folder + " cannot be watched: " + std::strerror(errno));
    folders_[watch] = folder;
}

std::string TreeWatch::wait(int milliseconds) {
    std::string changed;
    for (int patience = milliseconds;; patience = settling) {
        pollfd entry = {fd_, POLLIN, 0};
        if (::poll(&entry, 1, patience) <= 0) return changed;
        if (const std::string file = readChanges(); !file.empty()) changed = file;
        if (changed.empty()) return changed;
    }
}

std::string TreeWatch::readChanges() {
    alignas(inotify_event) char buffer[4096];
    std::string changed;
    const ssize_t size = ::read(fd_, buffer, sizeof buffer);
    for (ssize_t at = 0; at < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
        at += static_cast<ssize_t>(sizeof *event + event->len);
        if (event->len == 0 || !isSource(event->name)) continue;
        const std::string path = folders_[event->wd] + "/" + event->name;
        if ((event->mask & IN_ISDIR) != 0 && (event->mask & (IN_CREATE | IN_MOVED_TO)) != 0) add(path);
        // A file that was only made is not written yet.
        if ((event->mask & (IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE)) != 0) changed = path;
    }
    return changed;
}

}  // namespace Unit
