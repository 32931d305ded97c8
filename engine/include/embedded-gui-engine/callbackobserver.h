#pragma once

#include "embedded-gui-engine/observer.h"

namespace Engine {

/// An observer for a tie that needs a function rather than an object.
class CallbackObserver : public Observer {
  public:
    using Callback = void (*)(CallbackObserver* observer, std::intptr_t arg1, std::intptr_t arg2);

    /// `callback` may be null: then an update does nothing.
    constexpr explicit CallbackObserver(Callback callback = nullptr) : callback_(callback) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override {
        if (callback_ != nullptr) callback_(this, arg1, arg2);
    }

  private:
    Callback callback_;
};

}  // namespace Engine
