#pragma once

#include <cstdint>
#include <string>

/// One named memory area that processes share without locks: a 32-bit header word that holds the number of usable
/// bytes, written by the process that creates the area, then the usable bytes. A reader sees one word at a time;
/// consistency comes from the change notices of the server connection.
///
/// Failures of the system are fatal (std::runtime_error) with the name of the area as text.
class SharedMemory {
  public:
    /// `name` without the leading slash; `size` in usable bytes, without the header word.
    SharedMemory(const std::string& name, std::uint32_t size);
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory();

    /// Makes the area, or takes over an existing one of that name; `close` will remove the name.
    void create();
    void open();
    /// The usable bytes, valid until `close`; maps them on the first call. Fatal before `open` or `create`, when the
    /// header word differs from `size`, and when the object is too short to be mapped whole.
    void* address();
    void close();

    const std::string& name() const { return name_; }
    std::uint32_t size() const { return size_; }

  private:
    void openDescriptor(int flags);
    void checkObjectSize() const;
    void checkHeader(std::uint32_t found) const;
    void map();
    void unmap();
    std::size_t mappedSize() const { return std::size_t{size_} + sizeof(std::uint32_t); }

    std::string name_;
    std::uint32_t size_;
    int fd_ = -1;
    void* mapping_ = nullptr;
    void* data_ = nullptr;
    bool created_ = false;
};
