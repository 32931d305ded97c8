#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/support/wholeunit.h"

/// Somebody who does anything at all with a unit, while its server and its memory misbehave. What holds however it goes
/// is looked at on the way, and `problem` tells the first thing that did not.
class Monkey {
  public:
    Monkey(WholeUnit& unit, unsigned seed);

    /// One whim and the frame after it. False when something is wrong.
    bool step();
    const std::string& problem() const { return problem_; }
    std::string summary() const;

  private:
    struct Finger {
        bool down = false;
        Unit::TouchPoint at{};
    };

    int any(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    template <typename List>
    const auto& anyOf(const List& list) {
        return list[static_cast<std::size_t>(any(static_cast<int>(std::size(list))))];
    }
    void whim();

    // What a person does.
    void moveKey();
    void moveFinger();
    void turnControls();
    void changeHardware();
    // What the server does.
    void changeValue();
    void changeCell();
    void sendNotices();
    void sendEverything();
    void switchOn();
    // What nobody should do.
    void spoilMemory();
    void spoilInput();

    // What must hold.
    void check();
    void checkPicture();
    void goHome();
    void checkReleases();
    const char* messageKey(bool right) const;
    bool isHome() const;

    bool flag(const char* name) const { return unit_.get(name) == "1"; }
    /// The devices are read, and their keys do what they always do.
    bool keysCount() const;
    void release(const Unit::NamedKey& key);
    void noteRelease();
    void noteTurn();
    void letGo();
    void write(int area, std::uint32_t offset, const void* data, std::size_t size);
    void readLog();
    void fail(const std::string& what);

    WholeUnit& unit_;
    std::mt19937 random_;
    std::set<const Unit::NamedKey*> down_;
    std::array<Finger, 2> fingers_{};
    std::set<std::string> held_;       ///< keys whose press the product has seen, and no release
    std::set<std::string> swallowed_;  ///< those whose release a lock or a turn has taken
    std::uint32_t rotation_ = 0;
    bool releases_ = false;  ///< a key goes up in this step
    std::ifstream log_;
    bool announced_ = true;  ///< whatever stands in memory has been told
    std::string problem_;
    std::map<std::string, long> pages_;
    long comparisons_ = 0;
    long homecomings_ = 0;
};
