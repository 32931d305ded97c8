#include "platform/virtual/tape/recorder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "platform/virtual/descriptors.h"
#include "platform/virtual/tape/hash.h"

namespace Platform::Virtual {

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr int packing = 3;  // the product packs between two frames
constexpr std::size_t fullBlock = 96 << 10;
constexpr unsigned passesInFullBlock = 3600;
constexpr std::size_t pictureAllowance = std::size_t{1} << 20;
constexpr std::size_t pictureAllowancePerSecond = 4 << 10;
constexpr std::size_t largestFile = std::size_t{256} << 20;

}  // namespace

Recorder::Recorder(Instance& instance, const std::string& file, const std::string& about)
    : instance_(instance),
      writer_(file, about, packing, TapeWriter::Tail::Mapped),
      started_(instance.control().time()),
      time_(started_),
      lastTime_(started_) {
    if (!writer_.good())
        std::fprintf(stderr,
                     "The recording %s cannot be written; nothing is recorded. Is the folder there, with room?\n",
                     file.c_str());
    add({.kind = Event::Kind::Pass, .number = zigzag(started_)});
}

Recorder::~Recorder() {
    if (framebuffer_ != nullptr) ::munmap(const_cast<std::uint32_t*>(framebuffer_), framebufferSize_);
    areas_.give();
    writer_.closeBlock();
}

void Recorder::add(const Event& event) {
    if (writer_.fileSize() > largestFile) return;
    event_.clear();
    append(event_, event);
    writer_.add(event_);
}

Recorder::Path& Recorder::path(const std::string& name) {
    const auto [found, fresh] = paths_.try_emplace(name, Path{static_cast<std::uint32_t>(paths_.size() + 1), {}});
    if (fresh) add({.kind = Event::Kind::Path, .id = found->second.id, .data = asBytes(name.data(), name.size())});
    return found->second;
}

// Time.

std::int64_t Recorder::time() {
    if (!starting_) return time_;
    const std::int64_t now = instance_.control().time();
    add({.kind = Event::Kind::Time, .number = zigzag(now - started_)});
    return now;
}

void Recorder::slept(std::int64_t duration) {
    time_ += duration;
}

// Calls.

void Recorder::result(Call call, const char* name, int error) {
    Path& one = path(name);
    const auto last = one.last.find(call);
    if (last != one.last.end() && last->second == error) return;
    one.last[call] = error;
    add({.kind = Event::Kind::Result,
         .id = one.id,
         .result = static_cast<std::uint32_t>(error),
         .number = static_cast<std::uint64_t>(call)});
}

void Recorder::ended(Call call, const char* name, bool good) {
    const int error = errno;
    result(call, name, good ? 0 : error);
    errno = error;
}

// An opened file is told of each time: what is read from now on comes from its beginning.
void Recorder::opened(const char* name, int fd) {
    const int error = errno;
    if (fd >= 0) path(name).last.erase(Call::Open);
    result(Call::Open, name, fd >= 0 ? 0 : error);
    errno = error;
}

void Recorder::listed(const char* name, int fd) {
    const int error = errno;
    DIR* folder = ::fdopendir(::fcntl(fd, F_DUPFD_CLOEXEC, 0));
    if (folder != nullptr) {
        scratch_.clear();
        while (const dirent* entry = ::readdir(folder)) {
            const auto text = asBytes(entry->d_name, std::strlen(entry->d_name) + 1);
            scratch_.insert(scratch_.end(), text.begin(), text.end());
        }
        ::rewinddir(folder);  // the position is shared with the product's own descriptor
        ::closedir(folder);
        add({.kind = Event::Kind::Listing, .id = path(name).id, .data = scratch_});
    }
    errno = error;
}

void Recorder::areaOpened(const char* name, int fd) {
    const int error = errno;
    if (fd < 0) {
        add({.kind = Event::Kind::Area, .id = path(name).id, .result = static_cast<std::uint32_t>(error)});
        errno = error;
        return;
    }
    struct stat status = {};
    ::fstat(fd, &status);
    scratch_.resize(static_cast<std::size_t>(status.st_size));
    const ssize_t got = ::pread(fd, scratch_.data(), scratch_.size(), 0);
    scratch_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    add({.kind = Event::Kind::Area,
         .id = path(name).id,
         .number = static_cast<std::uint64_t>(status.st_size),
         .data = scratch_});
    errno = error;
}

// What was written between opening and mapping comes with the whole area.
void* Recorder::mapped(const char* name, void* shared, std::size_t size) {
    const std::uint32_t id = path(name).id;
    void* own = areas_.add(id, shared, size);
    if (own == nullptr) return shared;
    scratch_.clear();
    append(scratch_, MemoryWords{id, 0, asBytes(own, (size + 3) / 4 * 4)});
    add({.kind = Event::Kind::Memory, .data = scratch_});
    return own;
}

bool Recorder::unmapped(void* address) {
    return areas_.remove(address);
}

void Recorder::waited(const char* name, std::uint32_t events, int others) {
    add({.kind = Event::Kind::Wait,
         .id = path(name).id,
         .result = static_cast<std::uint32_t>(others),
         .number = events});
}

void Recorder::read(const char* name, const void* data, ssize_t result) {
    const int error = errno;
    const bool server = isServerSocket(name);
    if (result >= 0 || (error != EAGAIN && error != EINTR)) {
        Event event = {.kind = Event::Kind::Read, .id = path(name).id};
        if (result < 0) event.result = static_cast<std::uint32_t>(error);
        if (result > 0) event.data = asBytes(data, static_cast<std::size_t>(result));
        if (event.data.size() >= largeChunk) {
            const auto [known, fresh] = chunks_.try_emplace(fingerprint(data, event.data.size()), chunks_.size() + 1);
            if (!fresh) {
                event.data = {};
                event.number = known->second;
            }
        }
        add(event);
    }
    if (server && result > 0) exchangeMemory();
    errno = error;
}

void Recorder::sending(const void* data, std::size_t size) {
    areas_.give();
    sent_ = fingerprint(data, size, sent_);
}

// The picture.

void Recorder::framebufferOpened() {
    const int error = errno;
    const ControlBlock& block = instance_.control();
    add({.kind = Event::Kind::Mode, .number = block.yoffset, .data = asBytes(&block.screen, sizeof block.screen)});
    const int fd = ::open(instance_.file("dev/fb0").c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    if (fd >= 0 && ::fstat(fd, &status) == 0 && status.st_size > 0 && framebuffer_ == nullptr) {
        framebufferSize_ = static_cast<std::size_t>(status.st_size);
        void* mapping = ::mmap(nullptr, framebufferSize_, PROT_READ, MAP_SHARED, fd, 0);
        if (mapping != MAP_FAILED) framebuffer_ = static_cast<const std::uint32_t*>(mapping);
    }
    if (fd >= 0) ::close(fd);
    if (framebuffer_ != nullptr) {
        constexpr std::size_t piece = std::size_t{1} << 20;
        for (std::size_t at = 0; at < framebufferSize_; at += piece)
            add({.kind = Event::Kind::Contents,
                 .number = at,
                 .data = asBytes(framebuffer_, framebufferSize_).subspan(at, std::min(piece, framebufferSize_ - at))});
        if (block.screen.bits_per_pixel == 32) picture_.emplace(block.screen.xres, block.screen.yres);
    }
    errno = error;
}

bool Recorder::picturesAffordable() const {
    const auto seconds = static_cast<std::size_t>((time_ - started_) / second);
    return writer_.fileSize() + writer_.pending() / 8 < pictureAllowance + seconds * pictureAllowancePerSecond;
}

void Recorder::shown() {
    if (!picture_) return;
    const ControlBlock& block = instance_.control();
    const std::size_t pixels = std::size_t{picture_->width()} * picture_->height();
    const std::size_t start = std::size_t{block.yoffset} * picture_->width();
    if ((start + pixels) * sizeof(std::uint32_t) > framebufferSize_) return;
    const std::uint32_t* shown = framebuffer_ + start;
    const std::uint64_t print = fingerprint(shown, pixels * sizeof *shown);
    if (print == fingerprint_) return;
    fingerprint_ = print;
    scratch_.clear();
    const bool kept = picturesAffordable();
    if (kept) picture_->become(shown, scratch_);
    add({.kind = Event::Kind::Picture, .result = kept ? 1U : 0U, .number = print, .data = scratch_});
}

// Passes.

void Recorder::exchangeMemory() {
    scratch_.clear();
    areas_.exchange(scratch_);
    if (!scratch_.empty()) add({.kind = Event::Kind::Memory, .data = scratch_});
}

void Recorder::endPass() {
    areas_.give();
    if (sent_ != 0) add({.kind = Event::Kind::Sent, .number = std::exchange(sent_, 0)});
    if (writer_.pending() < fullBlock && ++passesInBlock_ < passesInFullBlock) return;
    writer_.closeBlock();
    passesInBlock_ = 0;
}

void Recorder::beginPass() {
    starting_ = false;
    time_ = instance_.control().time();
    add({.kind = Event::Kind::Pass, .number = zigzag(time_ - std::exchange(lastTime_, time_) - second / 60)});
    exchangeMemory();
}

}  // namespace Platform::Virtual
