#include "embedded-gui-engine/utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

struct Decoded {
    std::uint32_t code;
    int bytes;
    friend bool operator==(const Decoded&, const Decoded&) = default;
};

Decoded decode(const std::string& text) {
    const char* at = text.c_str();
    const std::uint32_t code = Engine::decodeUtf8(at);
    return {code, static_cast<int>(at - text.c_str())};
}

bool isContinuation(unsigned byte) {
    return byte >= 0x80 && byte <= 0xBF;
}

int continuations(unsigned first) {
    return first < 0xC0 || first >= 0xF8 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
}

/// What the three bytes must give, from the tables of the encoding rather than from masks.
Decoded expected(unsigned a, unsigned b, unsigned c) {
    if (a == 0) return {0, 0};
    if (a < 0x80) return {a, 1};
    const int count = continuations(a);
    if (count == 0) return {isContinuation(b) ? 0 : a, 1};
    if (!isContinuation(b)) return {0, 1};
    if (count == 1) return {(a - 0xC0) * 64 + (b - 0x80), 2};
    if (!isContinuation(c)) return {0, 2};
    if (count == 2) return {((a - 0xE0) * 64 + (b - 0x80)) * 64 + (c - 0x80), 3};
    return {0, 3};  // the fourth byte is the terminator
}

TEST(Utf8, DecodesEveryTwoAndThreeBytePrefix) {
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < 256; ++b) {
            for (unsigned c = 0; c < 256; ++c) {
                const std::string text{static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)};
                ASSERT_EQ(decode(text), expected(a, b, c)) << std::hex << a << ' ' << b << ' ' << c;
            }
        }
    }
}

TEST(Utf8, DecodesFourBytesAndStopsAtTheTerminator) {
    EXPECT_EQ(decode("\xF0\x9F\x8E\xA5"), (Decoded{0x1F3A5, 4}));
    EXPECT_EQ(decode("\xE4\xB8"), (Decoded{0, 2}));
    EXPECT_EQ(decode("\xC3"), (Decoded{0, 1}));
    EXPECT_EQ(decode(""), (Decoded{0, 0}));
}

TEST(Utf8, OldLatin1BytesPassOnlyWhereTheyBeginNoSequence) {
    EXPECT_EQ(decode("\x80"
                     "a")
                  .code,
              0x80u);
    EXPECT_EQ(decode("\xFC"
                     "a")
                  .code,
              0xFCu);
    EXPECT_EQ(decode("\xE9"
                     "a")
                  .code,
              0u);
    EXPECT_EQ(decode("\x80\x80").code, 0u);
}

}  // namespace
