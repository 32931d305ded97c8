#pragma once

#include <cassert>
#include <cstdint>
#include <memory>

namespace Engine {

/// A ring that is allocated once. What does not fit is dropped and counted.
template <typename T>
class RingQueue {
  public:
    explicit RingQueue(std::uint32_t capacity) : buffer_(std::make_unique<T[]>(capacity)), capacity_(capacity) {}

    /// False when the ring is full: the item is dropped.
    bool push(T item) {
        if (count_ == capacity_) {
            ++dropped_;
            return false;
        }
        buffer_[writeIndex_] = item;
        writeIndex_ = next(writeIndex_);
        ++count_;
        return true;
    }
    /// The oldest item; the ring must not be empty.
    T pop() {
        assert(count_ > 0);
        const T item = buffer_[readIndex_];
        readIndex_ = next(readIndex_);
        --count_;
        return item;
    }
    std::uint32_t count() const { return count_; }
    std::uint32_t capacity() const { return capacity_; }
    /// Items that found the ring full, since the start.
    std::uint32_t dropped() const { return dropped_; }

  private:
    std::uint32_t next(std::uint32_t index) const { return index + 1 == capacity_ ? 0 : index + 1; }

    std::unique_ptr<T[]> buffer_;
    std::uint32_t capacity_;
    std::uint32_t writeIndex_ = 0;
    std::uint32_t readIndex_ = 0;
    std::uint32_t count_ = 0;
    std::uint32_t dropped_ = 0;
};

}  // namespace Engine
