#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace Engine {

/// A text in storage that the model reserves, so that storing one allocates nothing. Without storage it stays empty.
class BoundedText {
  public:
    constexpr BoundedText() = default;
    /// The terminator takes one byte of the storage, which must be all zeros at first and is not owned. At most 65535
    /// bytes are used.
    constexpr explicit BoundedText(std::span<char> storage)
        : data_(storage.data()),
          capacity_(static_cast<std::uint16_t>(storage.size() < 65535 ? storage.size() : 65535)) {}

    /// Stores a copy, cut behind the last whole UTF-8 character that fits. Answers whether the stored text became
    /// another one; nothing is written otherwise. The text must not lie in this object's storage.
    bool assign(std::string_view text);

    const char* text() const { return data_ != nullptr ? data_ : ""; }
    std::string_view view() const { return {text(), length_}; }
    bool isEmpty() const { return length_ == 0; }
    /// Bytes, the terminator included.
    std::size_t capacity() const { return capacity_; }

  private:
    char* data_ = nullptr;
    std::uint16_t capacity_ = 0;
    std::uint16_t length_ = 0;
};

}  // namespace Engine
