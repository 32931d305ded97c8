#include "apps/gui/main/slideshow.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>
#include <string_view>

#include "apps/common/log/log.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/main/loadpng.h"
#include "platform/system.h"

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// Null with errno.
Folder openFolder(const char* path) {
    const int fd = Platform::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    // The stream closes a descriptor of its own.
    Folder folder(::fdopendir(::fcntl(fd, F_DUPFD_CLOEXEC, 0)));
    Platform::close(fd);
    return folder;
}

bool loads(LinuxFramebuffer& framebuffer, const std::string& path) try {
    loadPng(framebuffer, path);
    return true;
} catch (const std::exception&) {
    return false;
}

}  // namespace

Slideshow::Listing Slideshow::reload(Stick stick) {
    images_.clear();
    shown_ = false;
    if (stick == Stick::Absent) return Listing::NoStick;
    readFolder();
    if (index_ >= images_.size()) index_ = 0;
    return images_.empty() ? Listing::Empty : Listing::Found;
}

void Slideshow::readFolder() {
    const Folder stream = openFolder(folder);
    if (stream == nullptr) {
        TERN_LOG(Log::Warn, "Could not find images on USB: %s", std::strerror(errno));
        return;
    }
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name.size() > 4 && name.ends_with(".png")) images_.push_back(std::string(folder).append(name));
    }
    if (errno != 0) TERN_LOG(Log::Warn, "Could not find images on USB: %s", std::strerror(errno));
}

bool Slideshow::show(LinuxFramebuffer& framebuffer) {
    return !shown_ && showAt(index_, framebuffer);
}

bool Slideshow::showNext(LinuxFramebuffer& framebuffer) {
    return showAt(index_ + 1 < images_.size() ? index_ + 1 : 0, framebuffer);
}

bool Slideshow::showPrevious(LinuxFramebuffer& framebuffer) {
    return showAt(index_ > 0 ? index_ - 1 : images_.size() - 1, framebuffer);
}

bool Slideshow::showAt(std::size_t index, LinuxFramebuffer& framebuffer) {
    if (images_.empty()) return false;
    index_ = index;
    shown_ = loads(framebuffer, images_[index]);
    return true;
}
