#pragma once

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace Engine {

/// Collects text in a fixed buffer; what does not fit is dropped. The text is always terminated.
class TextWriter {
  public:
    /// `size` is at least 1, the terminator included.
    TextWriter(char* buffer, std::size_t size) : buffer_(buffer), size_(size) { buffer_[0] = '\0'; }
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    void put(char character) {
        if (room() == 0) return;
        buffer_[length_++] = character;
        buffer_[length_] = '\0';
    }
    void append(std::string_view text);
    /// As vprintf.
    [[gnu::format(printf, 2, 0)]] void print(const char* format, va_list arguments);

    std::string_view view() const { return {buffer_, length_}; }
    std::size_t room() const { return size_ - 1 - length_; }

  private:
    char* buffer_;
    std::size_t size_;
    std::size_t length_ = 0;
};

/// One printf conversion, taken apart. Printing builds the conversion anew from these fields, so nothing of a hostile
/// format ever reaches printf.
struct Conversion {
    /// Of width and precision; no text is longer.
    static constexpr int MaxDigits = 3;
    static constexpr int MaxNumber = 999;

    char flags[6] = "";  ///< each of "-+ #0" at most once
    int width = -1;      ///< -1: none
    int precision = -1;  ///< -1: none
    char letter = '\0';

    /// Reads flags, width and precision and leaves `at` behind them. False when a number has more than three
    /// digits; MaxNumber then stands for it.
    bool parse(const char*& at);
    void addFlag(char flag);
    static bool isFlag(char character) { return std::string_view("-+ #0").find(character) != std::string_view::npos; }

    // Each takes letters of its kind: d i o u x X c; the same but c; a A e E f F g G; s.
    void print(TextWriter& writer, int value) const;
    void print(TextWriter& writer, long long value) const;
    void print(TextWriter& writer, double value) const;
    /// Null counts as "".
    void print(TextWriter& writer, const char* value) const;
};

enum class ValueKind { Integer, LongLong, Floating, String };

/// A format with at most one conversion, which fits its kind of value, and any number of "%%".
class ValueFormat {
  public:
    /// `format` may be null and must outlive this object.
    ValueFormat(const char* format, ValueKind kind);

    /// Null when the format may be used, else what is wrong with it.
    const char* fault() const { return fault_; }

    /// Writes the text around the conversion and the value in its place. Only without a fault.
    template <typename Value>
    void print(TextWriter& writer, Value value) const {
        appendLiteral(writer, before_);
        if (conversion_.letter != '\0') conversion_.print(writer, value);
        appendLiteral(writer, behind_);
    }

  private:
    /// Reads the conversion behind a '%' and answers the character behind it.
    const char* parseConversion(const char* at, ValueKind kind);
    static void appendLiteral(TextWriter& writer, std::string_view text);

    std::string_view before_;
    Conversion conversion_;
    std::string_view behind_;
    const char* fault_ = nullptr;
};

}  // namespace Engine
