#pragma once

#include <cstdint>

namespace Engine {
class Observer;
}

namespace Backend::Variable {

/// Place of a variable in the sync pass.
using Slot = std::uint16_t;
/// A variable outside the catalogue: the sync pass does not visit it, its own `syncData` works.
constexpr Slot noSlot = 0xffff;

/// Who hears of a variable: a fixed array of observers and one change callback.
///
/// A write by the program is told at once (`changed`): callback first, then the observers. A value from the server is
/// only marked (`mark`) and told by the next sync pass, in slot order.
class Subject {
  public:
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    /// Takes the array, which stays the caller's and must outlive the program's use of this. One call a variable.
    void attach(Engine::Observer* const* observers, unsigned int count);
    /// A plain function, run on each change that the program makes; null for none.
    void setCallback(void (*callback)()) { callback_ = callback; }
    /// Calls `update` of each observer in array order, at once. Nested calls are allowed.
    void notify();
    /// Tells a change that waits; with `initial` tells in any case. The mark is cleared first, so that a change made
    /// by an observer is kept for the next call.
    void syncData(bool initial);
    /// No change waits.
    bool isSync() const { return pending_ == 0; }

    Slot slot() const { return slot_; }
    Engine::Observer* const* observers() const { return observers_; }
    unsigned int observerCount() const { return count_; }

  protected:
    constexpr explicit Subject(Slot slot) : slot_(slot) {}
    ~Subject() = default;

    /// The program changed the value: callback, then observers. What was waiting is told with it.
    void changed();
    /// A value came from the server.
    void mark();
    void clearMark();

  private:
    Engine::Observer* const* observers_ = nullptr;
    void (*callback_)() = nullptr;
    Slot slot_;
    std::uint16_t count_ : 15 = 0;
    std::uint16_t pending_ : 1 = 0;
};

}  // namespace Backend::Variable
