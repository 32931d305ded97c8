#pragma once

#include <functional>
#include <string>
#include <vector>

#include "embedded-gui-engine/observer.h"

/// Writes its name into a journal on each update, then does what a test gives it to do.
class Recorder : public Engine::Observer {
  public:
    Recorder(std::vector<std::string>& journal, std::string name, std::function<void()> then = {})
        : journal_(journal), name_(std::move(name)), then_(std::move(then)) {}

    void update(std::intptr_t, std::intptr_t) override {
        journal_.push_back(name_);
        if (then_) then_();
    }

  private:
    std::vector<std::string>& journal_;
    std::string name_;
    std::function<void()> then_;
};
