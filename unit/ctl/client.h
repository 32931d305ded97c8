#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "platform/virtual/driver.h"
#include "unit/ctl/inputdevices.h"
#include "unit/ctl/lineconnection.h"
#include "unit/ctl/memory.h"
#include "unit/ctl/notices.h"

namespace Unit {

enum class Output { Text, Json };

/// The verbs that speak to a running unit. Each prints its result on stdout and throws Problem when it cannot.
class Client {
  public:
    Client(Platform::Virtual::Place place, Output output) : place_(std::move(place)), output_(output) {}

    void stop();
    void status();
    void scene(const std::string& file);
    void step(unsigned frames);
    /// Prints the panel's address; starts it when none runs, on `port` (0: one that is free).
    void panel(unsigned port);

    void list(const std::string& glob) const;
    void get(const std::string& name);
    void set(const std::string& name, const std::string& value);
    void poke(const std::string& name, const std::string& value);
    void send(std::uint32_t id);
    void peek(const std::string& area, std::size_t offset, std::size_t length);
    /// Prints each change of a value whose name matches, until the server goes.
    void watch(const std::string& glob);
    void journal();
    void subscriptions();

    void key(const std::string& name, bool down);
    void configure(const std::string& module, const std::string& setting, const std::string& value);
    /// Of one module, or of all when `module` is empty.
    void settings(const std::string& module);
    void hostile(const std::vector<std::string>& mode);
    void press(const std::string& key, unsigned milliseconds);
    void touch(TouchPoint point, unsigned milliseconds);
    void drag(TouchPoint from, TouchPoint to, unsigned milliseconds);
    /// Two contacts side by side around `centre`, `from` and then `to` pixels apart.
    void pinch(TouchPoint centre, int from, int to, unsigned milliseconds);
    /// Holds the stick at -1 to 1 (right and up are positive), then lets it go back to the centre.
    void joystick(double x, double y, unsigned milliseconds);

    void page();
    /// `word`: draw, event, var or page.
    void trace(const std::string& word, std::uint32_t mask);
    void log(std::size_t lines) const;
    void shot(const std::string& file);
    void pixel(TouchPoint point);
    void postNotice(const Notices::Notice& notice);
    void removeNotice(const std::string& key);

  private:
    nlohmann::json unitStatus();
    std::string askSupervisor(const std::string& request, int milliseconds = 10'000);
    std::string askServer(const std::string& request);
    void requireUnit();
    bool hasServer();
    Memory& memory();
    Platform::Virtual::Driver& driver();
    InputDevices& devices();
    Cell find(const std::string& name) const;
    void write(const Cell& cell, const std::string& name, const std::string& value);
    void announce(std::uint32_t id);
    void clearLeftovers();
    void print(const std::string& text, const nlohmann::json& json) const;
    void checkPoint(TouchPoint point);
    void runFrames(unsigned milliseconds, unsigned least, const std::function<void(unsigned, unsigned)>& before);

    Platform::Virtual::Place place_;
    Output output_;
    std::unique_ptr<Memory> memory_;
    std::unique_ptr<Platform::Virtual::Driver> driver_;
    std::unique_ptr<InputDevices> devices_;
};

}  // namespace Unit
