#pragma once

#include <cstdarg>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/enumvariable.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/scalarvariable.h"
#include "embedded-gui-engine/stringvariable.h"
#include "embedded-gui-engine/trace.h"

/// A variable that tells its observers at once, and refuses every write when told so.
template <typename Interface, typename T>
class FakeVariable : public Interface {
  public:
    constexpr explicit FakeVariable(T value, const char* name = "VarFake") : value_(value), name_(name) {}

    const char* name() const override { return name_; }
    T value() const override { return value_; }
    int flags() const override { return 0; }
    bool setValue(T value) override {
        ++writes;
        if (refuses) return false;
        value_ = value;
        notify();
        return true;
    }
    void notify() {
        for (Engine::Observer* observer : observers) observer->update();
    }

    std::vector<Engine::Observer*> observers;
    bool refuses = false;
    int writes = 0;

  private:
    T value_;
    const char* name_;
};

class FakeBool : public FakeVariable<Engine::BoolVariable, bool> {
  public:
    using FakeVariable::FakeVariable;
    bool toggle() override { return setValue(!value()); }
    int properties(bool) const override { return 0; }
    Engine::TextId textKey(bool) const override { return {}; }
};

/// Value i has the text key 100 + i.
class FakeEnum : public FakeVariable<Engine::EnumVariable, int> {
  public:
    using FakeVariable::FakeVariable;
    int size() const override { return 4; }
    int properties(int) const override { return 3; }
    Engine::TextId textKey(int value) const override { return {static_cast<std::uint32_t>(100 + value)}; }
    bool increment(int step, bool) override { return setValue(value() + step); }
};

/// -100 to 100.
template <typename T>
class FakeScalar : public FakeVariable<Engine::ScalarVariable<T>, T> {
  public:
    using FakeVariable<Engine::ScalarVariable<T>, T>::FakeVariable;
    T min() const override { return -100; }
    T max() const override { return 100; }
    bool increment(T step, bool wrap) override {
        wrapped = wrap;
        return this->setValue(this->value() + step);
    }
    bool wrapped = false;
};

class FakeString : public FakeVariable<Engine::StringVariable, const char*> {
  public:
    using FakeVariable::FakeVariable;
    int size() const override { return 256; }
};

template <typename T>
class FakeProvider : public Engine::ValueProvider<T> {
  public:
    explicit FakeProvider(T first) : current(first) {}
    const char* name() const override { return "FakeProvider"; }
    T value() const override {
        ++reads;
        return current;
    }
    T current;
    mutable int reads = 0;
};

/// Collects the engine's log lines while it lives, each as "level text".
class LogCapture {
  public:
    LogCapture() : previous_(Engine::hooks().log) {
        lines().clear();
        Engine::hooks().log = [](int level, const char*, int, const char* format, va_list arguments) {
            char text[512];
// The format is that of the logging call.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
            std::vsnprintf(text, sizeof text, format, arguments);
#pragma GCC diagnostic pop
            lines().push_back(std::to_string(level) + " " + text);
        };
    }
    ~LogCapture() {
        Engine::hooks().log = previous_;
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    static std::vector<std::string>& lines() {
        static std::vector<std::string> collected;
        return collected;
    }

  private:
    decltype(Engine::Hooks::log) previous_;
};

/// Switches variable tracing on while it lives.
class VariableTrace {
  public:
    explicit VariableTrace(std::uint32_t bits) {
        flags_.var = bits;
        Engine::Trace::instance().setFlags(&flags_);
    }
    ~VariableTrace() { Engine::Trace::instance().setFlags(nullptr); }
    VariableTrace(const VariableTrace&) = delete;
    VariableTrace& operator=(const VariableTrace&) = delete;

  private:
    Engine::TraceFlags flags_{};
};

/// The language tables while it lives: a function from keys to texts.
class TextTables {
  public:
    explicit TextTables(const char* (*lookup)(Engine::TextId)) : previous_(Engine::hooks().textForId) {
        Engine::hooks().textForId = lookup;
    }
    ~TextTables() { Engine::hooks().textForId = previous_; }
    TextTables(const TextTables&) = delete;
    TextTables& operator=(const TextTables&) = delete;

  private:
    decltype(Engine::Hooks::textForId) previous_;
};
