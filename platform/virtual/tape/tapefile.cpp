#include "platform/virtual/tape/tapefile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <atomic>
#include <cerrno>
#include <cstring>

namespace Platform::Virtual {

namespace {

constexpr char magic[8] = {'T', 'E', 'R', 'N', 'T', 'A', 'P', 'E'};
constexpr std::uint32_t blockMark = 0x314b4c42, endMark = 0x31444e45;  // "BLK1", "END1"
constexpr std::size_t tailCapacity = std::size_t{4} << 20;
constexpr std::uint32_t largestBlock = 64U << 20;
constexpr std::uint32_t longestAbout = 64U << 10;

struct Head {
    char magic[8];
    std::uint32_t version;
    std::uint32_t aboutSize;
    std::uint32_t checksum;  // of the text
};
static_assert(sizeof(Head) == 20);

struct BlockHead {
    std::uint32_t mark;
    std::uint32_t number;  // from 0; of the end mark: how many blocks there are
    std::uint32_t size;
    std::uint32_t packedSize;
    std::uint32_t checksum;  // of the packed bytes
};
static_assert(sizeof(BlockHead) == 20);

std::uint32_t checksum(const void* data, std::size_t size) {
    return static_cast<std::uint32_t>(
        ::crc32(::crc32(0, nullptr, 0), static_cast<const Bytef*>(data), static_cast<uInt>(size)));
}

std::string tailFile(const std::string& file) {
    return file + ".tail";
}

/// False with errno.
bool readFile(const std::string& file, std::vector<std::byte>& bytes) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat status = {};
    const bool good = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
    if (good) bytes.resize(static_cast<std::size_t>(status.st_size));
    for (std::size_t at = 0; good && at < bytes.size();) {
        const ssize_t got = ::read(fd, bytes.data() + at, bytes.size() - at);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) bytes.resize(at);  // became shorter meanwhile
        if (got > 0) at += static_cast<std::size_t>(got);
    }
    ::close(fd);
    if (!good) errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return good;
}

template <typename Record>
bool takeRecord(std::span<const std::byte>& in, Record& record) {
    if (in.size() < sizeof record) return false;
    std::memcpy(&record, in.data(), sizeof record);
    in = in.subspan(sizeof record);
    return true;
}

}  // namespace

/// In front of the mapped tail. The block number tells a tail that has become a block from one that has not yet.
struct TapeWriter::TailHead {
    std::atomic<std::uint32_t> block;
    std::atomic<std::uint32_t> size;
};

TapeWriter::TapeWriter(const std::string& file, const std::string& about, int level, Tail tail) : level_(level) {
    fd_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    good_ = fd_ >= 0 && about.size() <= longestAbout;
    Head head = {};
    std::memcpy(head.magic, magic, sizeof magic);
    head.version = tapeVersion;
    head.aboutSize = static_cast<std::uint32_t>(about.size());
    head.checksum = checksum(about.data(), about.size());
    put({reinterpret_cast<const std::byte*>(&head), sizeof head});
    put({reinterpret_cast<const std::byte*>(about.data()), about.size()});
    if (!good_ || tail == Tail::None) return;

    const int tailFd = ::open(tailFile(file).c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    constexpr std::size_t size = sizeof(TailHead) + tailCapacity;
    void* mapping = MAP_FAILED;
    if (tailFd >= 0 && ::ftruncate(tailFd, size) == 0)
        mapping = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, tailFd, 0);
    if (tailFd >= 0) ::close(tailFd);
    good_ = mapping != MAP_FAILED;
    if (good_) tail_ = static_cast<TailHead*>(mapping);
}

TapeWriter::~TapeWriter() {
    if (tail_ != nullptr) ::munmap(tail_, sizeof(TailHead) + tailCapacity);
    if (fd_ >= 0) ::close(fd_);
}

std::byte* TapeWriter::tailBytes() const {
    return reinterpret_cast<std::byte*>(tail_ + 1);
}

std::size_t TapeWriter::pending() const {
    return tail_ != nullptr ? tail_->size.load() : buffer_.size();
}

void TapeWriter::add(std::span<const std::byte> event) {
    if (!good_) return;
    if (tail_ == nullptr) {
        buffer_.insert(buffer_.end(), event.begin(), event.end());
        return;
    }
    if (event.size() > tailCapacity - tail_->size) closeBlock();
    if (event.size() > tailCapacity) {
        good_ = false;
        return;
    }
    std::memcpy(tailBytes() + tail_->size, event.data(), event.size());
    tail_->size += static_cast<std::uint32_t>(event.size());  // last: half an event is never seen
}

void TapeWriter::closeBlock() {
    const std::size_t size = pending();
    if (!good_ || size == 0) return;
    const auto* bytes = reinterpret_cast<const Bytef*>(tail_ != nullptr ? tailBytes() : buffer_.data());
    uLongf packedSize = ::compressBound(size);
    packed_.resize(sizeof(BlockHead) + packedSize);
    auto* packed = reinterpret_cast<Bytef*>(packed_.data() + sizeof(BlockHead));
    good_ = ::compress2(packed, &packedSize, bytes, size, level_) == Z_OK;
    const BlockHead head = {blockMark, nextBlock_++, static_cast<std::uint32_t>(size),
                            static_cast<std::uint32_t>(packedSize), checksum(packed, packedSize)};
    std::memcpy(packed_.data(), &head, sizeof head);
    put({packed_.data(), sizeof head + packedSize});
    if (tail_ != nullptr) {
        tail_->size = 0;
        tail_->block = nextBlock_;
    }
    buffer_.clear();
}

void TapeWriter::finish() {
    closeBlock();
    const BlockHead head = {endMark, nextBlock_, 0, 0, checksum(&nextBlock_, sizeof nextBlock_)};
    put({reinterpret_cast<const std::byte*>(&head), sizeof head});
}

void TapeWriter::put(std::span<const std::byte> bytes) {
    while (good_ && !bytes.empty()) {
        const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        good_ = written > 0;
        if (!good_) return;
        fileSize_ += static_cast<std::size_t>(written);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

namespace {

class TapeParser {
  public:
    TapeParser(Tape& tape, std::span<const std::byte> in) : tape_(tape), in_(in) {}

    /// How many blocks were read.
    std::uint32_t parse() {
        if (!takeHead()) return 0;
        tape_.state = Tape::State::Unfinished;
        tape_.problem = "It has no end: it is still being written, or was cut short.";
        while (takeBlock()) {
        }
        return blocks_;
    }

  private:
    bool end(Tape::State state, const std::string& problem) {
        tape_.state = state;
        tape_.problem = problem;
        return false;
    }

    bool takeHead() {
        Head head = {};
        if (!takeRecord(in_, head) || std::memcmp(head.magic, magic, sizeof magic) != 0)
            return end(Tape::State::Foreign, "It is no recording.");
        if (head.version != tapeVersion)
            return end(Tape::State::Foreign, "It is a recording of version " + std::to_string(head.version) +
                                                 "; this program reads version " + std::to_string(tapeVersion) + ".");
        if (head.aboutSize > longestAbout || head.aboutSize > in_.size() ||
            checksum(in_.data(), head.aboutSize) != head.checksum)
            return end(Tape::State::Foreign, "Its head is damaged.");
        tape_.about.assign(reinterpret_cast<const char*>(in_.data()), head.aboutSize);
        in_ = in_.subspan(head.aboutSize);
        return true;
    }

    bool altered() { return end(Tape::State::Altered, "Block " + std::to_string(blocks_) + " has been altered."); }

    bool takeBlock() {
        BlockHead head = {};
        if (!takeRecord(in_, head)) return false;
        if (head.mark == endMark) {
            const bool whole = head.number == blocks_ && head.size == 0 && head.packedSize == 0 &&
                               head.checksum == checksum(&blocks_, sizeof blocks_) && in_.empty();
            return whole ? end(Tape::State::Whole, "") : altered();
        }
        if (head.mark != blockMark || head.number != blocks_ || head.size > largestBlock) return altered();
        if (head.packedSize > in_.size()) return false;  // cut short
        if (checksum(in_.data(), head.packedSize) != head.checksum) return altered();
        const std::size_t before = tape_.events.size();
        tape_.events.resize(before + head.size);
        uLongf size = head.size;
        const bool good = ::uncompress(reinterpret_cast<Bytef*>(tape_.events.data() + before), &size,
                                       reinterpret_cast<const Bytef*>(in_.data()), head.packedSize) == Z_OK;
        if (!good || size != head.size) {
            tape_.events.resize(before);
            return altered();
        }
        in_ = in_.subspan(head.packedSize);
        ++blocks_;
        return true;
    }

    Tape& tape_;
    std::span<const std::byte> in_;
    std::uint32_t blocks_ = 0;
};

void addTail(Tape& tape, const std::string& file, std::uint32_t blocks) {
    std::vector<std::byte> bytes;
    if (!readFile(tailFile(file), bytes)) return;
    std::span<const std::byte> in = bytes;
    struct {
        std::uint32_t block, size;
    } head = {};
    if (!takeRecord(in, head) || head.block != blocks || head.size > in.size()) return;
    tape.events.insert(tape.events.end(), in.begin(), in.begin() + head.size);
}

}  // namespace

std::string Tape::value(const std::string& key) const {
    for (std::size_t start = 0; start < about.size();) {
        const auto end = std::min(about.find('\n', start), about.size());
        const std::string line = about.substr(start, end - start);
        if (line.starts_with(key + "=")) return line.substr(key.size() + 1);
        start = end + 1;
    }
    return "";
}

Tape readTape(const std::string& file) {
    Tape tape;
    // The writer may close a block between the reads of its two files; the second try meets a fresh tail.
    constexpr int tries = 3;
    for (int i = 0; i < tries; ++i) {
        std::vector<std::byte> bytes, again;
        if (!readFile(file, bytes)) {
            tape.problem = std::string("It cannot be read: ") + std::strerror(errno) + ".";
            return tape;
        }
        tape = {};
        const std::uint32_t blocks = TapeParser(tape, bytes).parse();
        if (tape.state != Tape::State::Unfinished) return tape;
        addTail(tape, file, blocks);
        struct stat status = {};
        if (::stat(file.c_str(), &status) == 0 && static_cast<std::size_t>(status.st_size) == bytes.size()) break;
    }
    return tape;
}

}  // namespace Platform::Virtual
