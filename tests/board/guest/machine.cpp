#include "tests/board/guest/machine.h"

#include <linux/input-event-codes.h>

#include <cstdio>
#include <exception>

#include "tests/board/guest/expect.h"

namespace Board {

namespace {

constexpr const char* controlPath = "/var/volatile/unit-control.socket";
constexpr const char* scene = "/board/scene.json";

}  // namespace

Machine::Machine() : landingPage(loadPicture("/board/landing-page.png")) {}

void Machine::plugKeys1() {
    keys1.emplace("gpio-keys1", "/dev/input/by-path/platform-gpio-keys1-event",
                  std::vector<int>{BTN_0, BTN_1, BTN_2, BTN_3, BTN_4, BTN_5, BTN_6, BTN_7, BTN_8});
}

void Machine::plugKeys2() {
    keys2.emplace("gpio-keys2", keys2Path, std::vector<int>{KEY_MENU, KEY_RECORD, KEY_SELECT});
}

void Machine::startServer() {
    server.start({"--scene", scene});
    const bool up = waitUntil(20, [&] { return control_.connect(controlPath); });
    expect(up, "expected the server's control socket, found: " + server.words());
}

void Machine::changeDisplay(const std::string& parameters) {
    removeDisplay();
    loadModule("boardfb", parameters);
}

/// A check that has failed may have left the product at work on it.
void Machine::removeDisplay() {
    product.end();
    display.reset();
    unloadModule("boardfb");
}

void Machine::startProduct() {
    log.forget();
    product.start({});
}

void Machine::awaitLandingPage() {
    log.await("USER Page: Home_LDD", 20);
}

std::string Machine::awaitEnd() {
    if (!product.running()) return "before that";
    constexpr int patience = 5;
    std::optional<std::string> end;
    waitUntil(patience, [&] { return (end = product.takeEnd()).has_value(); });
    if (end) return *end;
    product.end();
    return "not at all within " + std::to_string(patience) + " s";
}

std::string Machine::unexpectedEnd() {
    const std::optional<std::string> end = product.takeEnd();
    return end ? "; the product has ended " + *end + ": " + product.lastWords() : "";
}

void Machine::expectGoodEnd() {
    product.signal(SIGTERM);
    const std::string end = awaitEnd();
    expect(end == "with status 0", "expected an end with status 0, found an end " + end);
}

void Machine::expectShown(const Picture& expected, const std::string& name, double seconds) const {
    if (waitUntil(seconds, [&] { return display->shown() == expected; })) return;
    const Picture found = display->shown();
    tellPicture(name, found);
    throw Failure(std::to_string(differences(found, expected)) +
                  " pixels of the shown buffer differ from the picture " + name);
}

SetFlag::~SetFlag() {
    try {
        board_.ask("set " + name_ + " 0");
    } catch (const std::exception& failure) {
        std::printf("%s stays set: %s\n", name_.c_str(), failure.what());
    }
}

void Report::check(const std::string& name, const std::function<void()>& body) {
    try {
        body();
        std::printf("ok %s\n", name.c_str());
    } catch (const std::exception& failure) {
        failed_ = true;
        std::printf("FAILED %s: %s%s\n", name.c_str(), failure.what(), tellMore_().c_str());
    }
}

}  // namespace Board
