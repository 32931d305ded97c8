#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Platform::Virtual {

/// Private copies of memory areas that other processes write at any time. The product sees the copy; at told moments
/// what it wrote goes out and what others wrote comes in. So a recording knows exactly what the product could see when.
///
/// Word by word: what came in is told in aligned words of 32 bits, and what goes out is put into the shared word
/// without losing bytes that others write into the same word meanwhile.
class AreaCopies {
  public:
    ~AreaCopies();

    /// Takes the shared mapping over and returns the private one, null when that cannot be made. `id` is told again
    /// with what comes in.
    void* add(std::uint32_t id, void* shared, std::size_t size);
    /// Unmaps both, after what was written went out. False when `own` is none of these copies.
    bool remove(void* own);

    /// What the product wrote goes out.
    void give();
    /// What the product wrote goes out, then what others wrote comes in; `changed` gets it as MemoryWords.
    void exchange(std::vector<std::byte>& changed);

  private:
    struct Copy {
        std::uint32_t id;
        std::size_t size;
        std::uint32_t* shared;
        std::uint32_t* own;
        std::uint32_t* base;  ///< what both agreed on last

        std::size_t words() const { return (size + sizeof(std::uint32_t) - 1) / sizeof(std::uint32_t); }
    };

    static void give(Copy& copy);
    static void takeIn(Copy& copy, std::vector<std::byte>& changed);

    std::vector<Copy> copies_;
};

}  // namespace Platform::Virtual
