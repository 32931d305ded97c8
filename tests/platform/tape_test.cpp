// Recordings: what an event, a file of them, a copied memory area and a picture in tiles keep, and what damage does.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ranges>

#include "platform/virtual/tape/areacopies.h"
#include "platform/virtual/tape/event.h"
#include "platform/virtual/tape/hash.h"
#include "platform/virtual/tape/tapefile.h"
#include "platform/virtual/tape/tiles.h"
#include "platform/virtual/virtual.h"

namespace {

using namespace Platform::Virtual;

std::vector<std::byte> bytesOf(const std::string& text) {
    const auto bytes = asBytes(text.data(), text.size());
    return {bytes.begin(), bytes.end()};
}

std::string fileText(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeText(const std::string& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

class TapeFile : public testing::Test {
  protected:
    const std::string file = testing::TempDir() + "tape-" + std::to_string(::getpid());

    void TearDown() override {
        std::filesystem::remove(file);
        std::filesystem::remove(file + ".tail");
    }
};

/// Shared memory of four words, as another process would see it.
struct SharedWords {
    std::uint32_t* words =
        static_cast<std::uint32_t*>(mmap(nullptr, 16, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
};

}  // namespace

TEST(TapeEvent, IsReadAsItWasWrittenAndNeverHalf) {
    const auto data = bytesOf("twelve bytes");
    std::vector<std::byte> out;
    append(out, Event{.kind = Event::Kind::Read, .id = 300, .result = 5, .number = 1ULL << 63, .data = data});
    append(out, Event{.kind = Event::Kind::Pass});
    std::span<const std::byte> in = out;
    Event event;
    ASSERT_TRUE(take(in, event));
    EXPECT_EQ(event.id, 300u);
    EXPECT_EQ(event.result, 5u);
    EXPECT_EQ(event.number, 1ULL << 63);
    EXPECT_TRUE(std::ranges::equal(event.data, data));
    ASSERT_TRUE(take(in, event));
    EXPECT_EQ(event.kind, Event::Kind::Pass);
    EXPECT_TRUE(in.empty());
    for (std::size_t size = 0; size + 1 < out.size(); ++size) {
        // A buffer of just that size, so that a step beyond it is seen by the sanitizer.
        const std::vector<std::byte> cut(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(size));
        in = cut;
        EXPECT_FALSE(take(in, event)) << size;
    }
}

TEST_F(TapeFile, TheTailOfAWriterThatWasKilledIsRead) {
    TapeWriter writer(file, "program=abc\nzone=UTC\n", 3, TapeWriter::Tail::Mapped);
    writer.add(bytesOf("one "));
    writer.closeBlock();
    writer.add(bytesOf("two"));
    const Tape tape = readTape(file);
    EXPECT_EQ(tape.state, Tape::State::Unfinished);
    EXPECT_EQ(tape.events, bytesOf("one two"));
    EXPECT_EQ(tape.value("zone"), "UTC");
    EXPECT_EQ(tape.value("zon"), "");
}

TEST_F(TapeFile, DamageIsToldAndWhatIsIntactIsKept) {
    {
        TapeWriter writer(file, "program=abc\n", 9, TapeWriter::Tail::None);
        for (const char* block : {"first", "second", "third"}) {
            writer.add(bytesOf(block));
            writer.closeBlock();
        }
        writer.finish();
    }
    EXPECT_EQ(readTape(file).state, Tape::State::Whole);
    const std::string whole = fileText(file);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeText(file, whole.substr(0, size));
        const Tape tape = readTape(file);
        EXPECT_TRUE(tape.state == Tape::State::Unfinished || tape.state == Tape::State::Foreign) << size;
    }
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string other = whole;
        other[at] = static_cast<char>(other[at] ^ 0x40);
        writeText(file, other);
        const Tape tape = readTape(file);
        EXPECT_NE(tape.state, Tape::State::Whole) << at;
        EXPECT_NE(tape.problem, "");
        EXPECT_TRUE(tape.events.empty() || std::ranges::equal(tape.events, bytesOf("firstsecondthird") |
                                                                               std::views::take(tape.events.size())));
    }
}

TEST_F(TapeFile, AFolderIsNoRecording) {
    const Tape tape = readTape(std::filesystem::path(file).parent_path());
    EXPECT_EQ(tape.state, Tape::State::Foreign);
    EXPECT_EQ(tape.problem, "It cannot be read: Is a directory.");
}

TEST(AreaCopies, BothSidesKeepTheirBytesOfOneWord) {
    SharedWords shared;
    shared.words[1] = 0x11223344;
    AreaCopies copies;
    auto* own = static_cast<std::uint32_t*>(copies.add(7, shared.words, 16));
    EXPECT_EQ(own[1], 0x11223344u);
    own[1] = 0x11223355;           // the product's byte
    shared.words[1] = 0x66223344;  // somebody else's, at the same time
    shared.words[3] = 9;
    EXPECT_EQ(own[3], 0u);
    std::vector<std::byte> changed;
    copies.exchange(changed);
    EXPECT_EQ(own[1], 0x66223355u);
    EXPECT_EQ(shared.words[1], 0x66223355u);
    EXPECT_EQ(own[3], 9u);

    std::span<const std::byte> in = changed;
    MemoryWords words;
    ASSERT_TRUE(take(in, words));
    EXPECT_EQ(words.id, 7u);
    EXPECT_EQ(words.first, 1u);
    ASSERT_TRUE(take(in, words));
    EXPECT_EQ(words.first, 3u);
    EXPECT_TRUE(in.empty());

    changed.clear();
    copies.exchange(changed);
    EXPECT_TRUE(changed.empty());
}

TEST(TiledPicture, IsRebuiltFromItsTiles) {
    constexpr unsigned width = 37, height = 21;  // the last tiles are cut
    TiledPicture from(width, height), to(width, height);
    std::vector<std::uint32_t> pixels(width * height);
    std::vector<std::byte> first, second;
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint32_t>(i * 77);
    from.become(pixels.data(), first);
    pixels.back() = 1;
    from.become(pixels.data(), second);
    EXPECT_LT(second.size(), first.size() / 2);
    EXPECT_TRUE(to.apply(first) && to.apply(second));
    EXPECT_EQ(to.pixels(), pixels);
    for (std::size_t size = 1; size < second.size(); ++size)
        EXPECT_FALSE(to.apply(std::span(second).first(size))) << size;
    EXPECT_NE(fingerprint(pixels.data(), 64), fingerprint(pixels.data() + 1, 64));
}
