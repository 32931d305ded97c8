#include "platform/virtual/tape/replayer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "platform/virtual/descriptors.h"
#include "platform/virtual/tape/hash.h"

namespace Platform::Virtual {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t frameTime = 1'000'000'000 / 60;

bool isWritten(int flags) {
    return (flags & O_ACCMODE) != O_RDONLY;
}

void writeFile(const std::string& file, std::span<const std::byte> bytes) {
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) return;
    std::fwrite(bytes.data(), 1, bytes.size(), out);
    std::fclose(out);
}

}  // namespace

Replayer::Replayer(Instance& instance, const std::string& file, OnDifference onDifference)
    : instance_(instance), onDifference_(onDifference), tape_(readTape(file)), rest_(tape_.events) {
    if (tape_.state == Tape::State::Foreign) refuse(file + ": " + tape_.problem);
    const std::string checked = tape_.value("checked");
    if (!checked.empty()) checked_ = checked == "last" ? Checked::Last : Checked::None;
    std::error_code ignored;
    for (const char* old : {resultFile, expectedFile, shownFile}) fs::remove(instance_.file(old), ignored);
    Event first;
    if (!take(rest_, first) || first.kind != Event::Kind::Pass) refuse(file + ": It has no beginning.");
    time_ = passTime_ = unzigzag(first.number);
    readPass();
}

void Replayer::refuse(const std::string& problem) {
    std::fprintf(stderr, "%s\n", problem.c_str());
    std::_Exit(2);
}

void Replayer::note(const std::string& line) {
    std::FILE* out = std::fopen(instance_.file(resultFile).c_str(), "a");
    if (out == nullptr) return;
    std::fprintf(out, "%s\n", line.c_str());
    std::fclose(out);
}

void Replayer::finish(const char* how) {
    note("frames " + std::to_string(frame_));
    note(std::string("end ") + how);
    std::fflush(nullptr);
    std::_Exit(0);
}

Replayer::Path& Replayer::path(std::uint32_t id) {
    const auto found = paths_.find(id);
    if (found == paths_.end()) refuse("The recording speaks of a path that it has not named.");
    return found->second;
}

Replayer::Path* Replayer::find(const char* name) {
    const auto id = ids_.find(std::string_view(name));
    return id != ids_.end() ? &paths_.at(id->second) : nullptr;
}

// What the recording says.

/// All events up to the next pass. They are made ready at once; what came in behind a read waits for that read.
void Replayer::readPass() {
    behind_ = nullptr;
    next_.reset();
    Event event;
    while (!rest_.empty()) {
        if (!take(rest_, event)) refuse("The recording makes no sense behind frame " + std::to_string(frame_) + ".");
        if (event.kind == Event::Kind::Pass) {
            next_ = event;
            return;
        }
        play(event);
    }
}

void Replayer::play(const Event& event) {
    switch (event.kind) {
        case Event::Kind::Path:
            paths_[event.id].name.assign(reinterpret_cast<const char*>(event.data.data()), event.data.size());
            ids_[paths_[event.id].name] = event.id;
            break;
        case Event::Kind::Area: playArea(event); break;
        case Event::Kind::Memory:
            if (behind_ != nullptr)
                behind_->memory.push_back(event.data);
            else
                storeWords(event.data);
            break;
        case Event::Kind::Wait:
            ready_.push_back({event.id, static_cast<std::uint32_t>(event.number), event.result});
            break;
        case Event::Kind::Read: playRead(event); break;
        case Event::Kind::Result: playResult(event); break;
        case Event::Kind::Picture:
            expected_ = event.number;
            expectedKept_ = event.result != 0 && picture_ && picture_->apply(event.data);
            break;
        case Event::Kind::Sent: expectedSent_ = event.number; break;
        case Event::Kind::Mode: playMode(event); break;
        case Event::Kind::Contents: playContents(event); break;
        case Event::Kind::Listing: playListing(event); break;
        case Event::Kind::Time: startTimes_.push_back(time_ + unzigzag(event.number)); break;
        default: break;
    }
}

void Replayer::playArea(const Event& event) {
    Path& one = path(event.id);
    one.areaError = static_cast<int>(event.result);
    if (one.areaError != 0) return;
    char buffer[Instance::nameLimit];
    const char* name = instance_.mapName(one.name.c_str(), buffer);
    const int fd = name != nullptr ? ::shm_open(name, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600) : -1;
    const std::size_t size = std::max(static_cast<std::size_t>(event.number), event.data.size());
    constexpr std::size_t largest = std::size_t{64} << 20;
    void* mapping = MAP_FAILED;
    if (fd >= 0 && size <= largest && ::ftruncate(fd, static_cast<off_t>(size)) == 0)
        mapping = size == 0 ? nullptr : ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (fd >= 0) ::close(fd);
    if (mapping == MAP_FAILED) refuse("The memory area " + one.name + " of the recording cannot be made.");
    one.area = {static_cast<std::byte*>(mapping), size};
    std::ranges::copy(event.data, one.area.begin());
}

void Replayer::storeWords(std::span<const std::byte> words) {
    MemoryWords run;
    while (!words.empty()) {
        if (!take(words, run)) refuse("The recording's memory makes no sense in frame " + std::to_string(frame_) + ".");
        const std::span<std::byte> area = path(run.id).area;
        const std::size_t at = run.first * sizeof(std::uint32_t);
        if (at >= area.size()) continue;
        // The last word of an area may reach past its end.
        std::ranges::copy(run.bytes.first(std::min(run.bytes.size(), area.size() - at)),
                          area.begin() + static_cast<std::ptrdiff_t>(at));
    }
}

void Replayer::playRead(const Event& event) {
    Chunk chunk;
    chunk.bytes = event.data;
    if (event.result != 0) {
        chunk.kind = Chunk::Kind::Failure;
        chunk.error = static_cast<int>(event.result);
    } else if (event.number != 0) {
        if (event.number > largeChunks_.size()) refuse("The recording refers to bytes that it has not told.");
        chunk.bytes = largeChunks_[static_cast<std::size_t>(event.number - 1)];
    } else if (event.data.size() >= largeChunk) {
        largeChunks_.push_back(event.data);
    }
    Path& one = path(event.id);
    one.chunks.push_back(std::move(chunk));
    if (isServerSocket(one.name.c_str())) behind_ = &one.chunks.back();
}

void Replayer::playResult(const Event& event) {
    if (event.number >= static_cast<std::uint64_t>(Call::Count_)) return;
    Path& one = path(event.id);
    const auto call = static_cast<Call>(event.number);
    one.results[call].push_back(static_cast<int>(event.result));
    if (call == Call::Open && event.result == 0) {
        Chunk mark;
        mark.kind = Chunk::Kind::Opened;
        one.chunks.push_back(std::move(mark));
    }
}

void Replayer::playMode(const Event& event) {
    fb_var_screeninfo mode;
    if (event.data.size() != sizeof mode) return;
    std::memcpy(&mode, event.data.data(), sizeof mode);
    constexpr std::uint32_t largest = 4096;
    if (mode.xres == 0 || mode.yres == 0 || mode.xres > largest || mode.yres > largest || mode.bits_per_pixel > 32)
        refuse("The recording is of a display that makes no sense.");
    instance_.setScreen(mode.xres, mode.yres, mode.bits_per_pixel);
    instance_.control().screen = mode;
    instance_.control().yoffset =
        event.number + mode.yres <= std::uint64_t{mode.yres} * 2 ? static_cast<std::uint32_t>(event.number) : 0;
    picture_ = TiledPicture::ofMode(event.data);
}

void Replayer::playContents(const Event& event) const {
    const int fd = ::open(instance_.file("dev/fb0").c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return;
    struct stat status = {};
    const bool fits =
        ::fstat(fd, &status) == 0 && event.number + event.data.size() <= static_cast<std::uint64_t>(status.st_size);
    if (!fits || ::pwrite(fd, event.data.data(), event.data.size(), static_cast<off_t>(event.number)) < 0)
        refuse("The recording's framebuffer cannot be made.");
    ::close(fd);
}

/// The names lie in a folder of the instance; their order is that of the file system.
void Replayer::playListing(const Event& event) {
    char buffer[Instance::pathLimit];
    const char* folder = instance_.mapPath(path(event.id).name.c_str(), buffer);
    std::error_code ignored;
    if (folder == nullptr) return;
    fs::remove_all(folder, ignored);
    fs::create_directories(folder, ignored);
    for (auto names = event.data; !names.empty();) {
        const auto end = std::ranges::find(names, std::byte{0});
        const std::string name(reinterpret_cast<const char*>(names.data()),
                               static_cast<std::size_t>(end - names.begin()));
        if (!name.empty() && name != "." && name != ".." && name.find('/') == name.npos)
            writeFile(std::string(folder) + "/" + name, {});
        names = names.subspan(std::min(names.size(), name.size() + 1));
    }
}

// What the product asks.

std::int64_t Replayer::time() {
    if (startTimes_.empty()) return time_;
    const std::int64_t now = startTimes_.front();
    startTimes_.pop_front();
    if (startTimes_.empty()) time_ = now;
    return now;
}

bool Replayer::speaksFor(const char* path) {
    return path[0] == '/' && std::strcmp(path, "/dev/kmsg") != 0 && std::strcmp(path, "/dev/fb0") != 0 &&
           std::strncmp(path, "/Mem", 4) != 0;
}

int Replayer::open(const char* name, int flags, mode_t mode) {
    char buffer[Instance::pathLimit];
    const char* file = instance_.mapPath(name, buffer);
    if (file == nullptr) return -1;
    if (isWritten(flags)) return ::open(file, flags, mode);
    if (const int error = resultOf(Call::Open, name); error != 0) {
        errno = error;
        return -1;
    }
    if (Path* one = find(name); one != nullptr)
        while (!one->chunks.empty()) {  // what the last one to open it has left
            const bool mark = one->chunks.front().kind == Chunk::Kind::Opened;
            one->chunks.pop_front();
            if (mark) break;
        }
    return (flags & O_DIRECTORY) != 0 ? ::open(file, flags) : ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

int Replayer::openArea(const char* name) {
    const Path* one = find(name);
    const int error = one == nullptr ? ENOENT : one->areaError;
    char buffer[Instance::nameLimit];
    const char* own = instance_.mapName(name, buffer);
    if (error == 0 && own != nullptr) return ::shm_open(own, O_RDWR, 0);
    errno = error != 0 ? error : errno;
    return -1;
}

int Replayer::resultOf(Call call, const char* name) {
    Path* one = find(name);
    if (one == nullptr) return call == Call::Write ? 0 : ENOENT;
    auto& waiting = one->results[call];
    const auto last = one->lastResult.try_emplace(call, call == Call::Open ? ENOENT : 0).first;
    if (waiting.empty()) return last->second;
    last->second = waiting.front();
    waiting.pop_front();
    return last->second;
}

// The product registers its socket before it connects, so that it has no path yet; there is no other.
void Replayer::registerForWait(int fd, const epoll_event* event) {
    for (auto& [id, one] : paths_) {
        if (one.registered == fd) one.registered = -1;
        if (event == nullptr || !isServerSocket(one.name.c_str())) continue;
        one.registered = fd;
        one.registration = *event;
    }
}

int Replayer::wait(epoll_event* events, int maxEvents) {
    int count = 0;
    for (bool more = true; more && !ready_.empty() && count < maxEvents; ready_.pop_front()) {
        const Ready& ready = ready_.front();
        more = ready.others != 0;
        const Path& one = path(ready.id);
        if (one.registered < 0) continue;
        events[count] = one.registration;
        events[count++].events = ready.events;
    }
    return count;
}

ssize_t Replayer::read(const char* name, void* buffer, std::size_t size) {
    const bool device = std::strncmp(name, "/dev/", 5) == 0 || isServerSocket(name);
    Path* one = find(name);
    if (one == nullptr || one->chunks.empty() || one->chunks.front().kind == Chunk::Kind::Opened) {
        errno = EAGAIN;
        return device ? -1 : 0;
    }
    Chunk& chunk = one->chunks.front();
    const std::size_t count = std::min(size, chunk.bytes.size());
    std::memcpy(buffer, chunk.bytes.data(), count);
    chunk.bytes = chunk.bytes.subspan(count);
    if (!chunk.bytes.empty()) return static_cast<ssize_t>(count);
    for (const auto words : chunk.memory) storeWords(words);
    if (behind_ == &chunk) behind_ = nullptr;
    const int error = chunk.kind == Chunk::Kind::Failure ? chunk.error : 0;
    one->chunks.pop_front();
    errno = error;
    return error != 0 ? -1 : static_cast<ssize_t>(count);
}

void Replayer::sending(const void* data, std::size_t size) {
    sent_ = fingerprint(data, size, sent_);
}

// Frames.

std::span<const std::uint32_t> Replayer::shownPixels() const {
    static const std::uint32_t* mapping = nullptr;
    static std::size_t mapped = 0;
    const ControlBlock& block = instance_.control();
    const std::size_t pixels = std::size_t{block.screen.xres} * block.screen.yres;
    const std::size_t size = pixels * 2 * sizeof(std::uint32_t);
    if (mapping == nullptr || mapped != size) {
        const int fd = ::open(instance_.file("dev/fb0").c_str(), O_RDONLY | O_CLOEXEC);
        void* address = fd >= 0 ? ::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd, 0) : MAP_FAILED;
        if (fd >= 0) ::close(fd);
        if (address == MAP_FAILED) return {};
        mapping = static_cast<const std::uint32_t*>(address);
        mapped = size;
    }
    return {mapping + std::size_t{block.yoffset} * block.screen.xres, pixels};
}

void Replayer::shown() {
    if (!picture_) return;
    const auto pixels = shownPixels();
    actual_ = fingerprint(pixels.data(), pixels.size_bytes());
}

// The last pass of a recording may have been cut off anywhere: it is played, and not compared.
void Replayer::endPass() {
    if (next_ && (checked_ == Checked::All || (checked_ == Checked::Last && rest_.empty()))) compare();
    expectedSent_ = sent_ = 0;
}

void Replayer::compare() {
    if (actual_ != expected_)
        differs("picture");
    else if (sent_ != expectedSent_ && checked_ == Checked::All)
        differs("sent");
}

void Replayer::differs(const char* what) {
    if (!differed_) {
        note("difference " + std::to_string(frame_) + " " + what);
        savePictures();
    }
    differed_ = true;
    if (onDifference_ == OnDifference::Stop) finish("difference");
}

void Replayer::savePictures() const {
    const auto pixels = shownPixels();
    writeFile(instance_.file(shownFile), std::as_bytes(pixels));
    if (expectedKept_) writeFile(instance_.file(expectedFile), std::as_bytes(std::span(picture_->pixels())));
}

void Replayer::beginPass() {
    if (!next_) finish(tape_.state == Tape::State::Altered ? "altered" : "end");
    ++frame_;
    passTime_ += frameTime + unzigzag(next_->number);
    time_ = passTime_;
    startTimes_.clear();
    readPass();
}

}  // namespace Platform::Virtual
