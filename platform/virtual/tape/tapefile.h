#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Platform::Virtual {

/// How a recording lies in a file: a head with a text about it, then numbered blocks of events, each packed by zlib and
/// with a checksum, then, when it was finished, an end mark.
///
/// While it is being written the newest events stand unpacked in a second file, the tail ("FILE.tail"), which the
/// writer maps: they are there even when the writing process was killed. readTape puts both together.
///
/// The text has a line "key=value" for each thing to know. The seam itself gives it no meaning.
constexpr std::uint32_t tapeVersion = 1;

class TapeWriter {
  public:
    enum class Tail { None, Mapped };

    /// Makes the file anew. `level`: zlib's, 1 to 9.
    TapeWriter(const std::string& file, const std::string& about, int level, Tail tail);
    ~TapeWriter();
    TapeWriter(const TapeWriter&) = delete;
    TapeWriter& operator=(const TapeWriter&) = delete;

    /// False from the first write that failed, or when the file could not be made; nothing is written any more then.
    bool good() const { return good_; }
    void add(std::span<const std::byte> event);
    /// Bytes waiting for a block of their own.
    std::size_t pending() const;
    /// Packs what is pending and puts it into the file.
    void closeBlock();
    /// The last block and the end mark. Nothing can be added afterwards.
    void finish();
    std::size_t fileSize() const { return fileSize_; }

  private:
    struct TailHead;

    void put(std::span<const std::byte> bytes);
    std::byte* tailBytes() const;

    int fd_ = -1;
    bool good_ = true;
    int level_;
    std::uint32_t nextBlock_ = 0;
    std::size_t fileSize_ = 0;
    TailHead* tail_ = nullptr;
    std::vector<std::byte> buffer_;  // without a tail
    std::vector<std::byte> packed_;
};

/// A recording as it was read: all events of the intact blocks one behind the other.
struct Tape {
    enum class State {
        Whole,
        Unfinished,  ///< no end mark: still being written, its writer died, or the file was cut short
        Altered,     ///< a block's checksum is wrong or it makes no sense; `events` ends before it
        Foreign      ///< no recording, or one of another version; nothing else is filled
    };

    State state = State::Foreign;
    std::string problem;  ///< in words, for everything but Whole
    std::string about;
    std::vector<std::byte> events;

    /// The value of a key of the text about it, "" when it has none.
    std::string value(const std::string& key) const;
};

Tape readTape(const std::string& file);

}  // namespace Platform::Virtual
