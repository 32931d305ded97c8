// Keys and fingers, on the devices' own paths.
#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstdio>

#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

/// The product looks for it for five seconds from its first frame.
void lateDevice(Machine& board) {
    const std::string opening = std::string("Open of device ") + Machine::keys2Path;
    board.log.await(opening + " failed, trying for up to", 1);
    sleepFor(2);
    board.plugKeys2();
    board.log.await(opening + " suceeded after", 1);
    const std::string before = board.ask("get VarFuncLDD");
    board.keys2.value().press(KEY_SELECT);
    expect(waitUntil(1, [&] { return board.ask("get VarFuncLDD") != before; }),
           "expected the function key to change VarFuncLDD, found it at " + before);
    board.showLandingPage();
    board.expectShown(board.landingPage, "after-function-key", 1);
}

void keyChangesPage(Machine& board) {
    Picture last = board.landingPage;
    for (const char* page : {"Home_Camera", "Menu_Root", "Home_LDD"}) {
        board.log.forget();
        board.keys2.value().press(KEY_MENU);
        board.log.await(std::string("USER Page: ") + page, 2);
        sleepFor(0.1);
        expect(board.display->shown() != last, std::string("the picture has not changed with the page ") + page);
        last = board.display->shown();
    }
    board.showLandingPage();
    board.expectShown(board.landingPage, "after-pages", 1);
}

float mark(Machine& board) {
    return std::stof(board.ask("get VarLensMarkerFocusValue0"));
}

/// A field below the scale clears the mark that stands on the reading line.
void touchReachesWidget(Machine& board) {
    expect(mark(board) >= 0, "expected a mark before the touch, found " + std::to_string(mark(board)));
    board.touch->tap(200, 384);
    expect(waitUntil(1, [&] { return mark(board) < 0; }),
           "expected no mark after the touch, found " + std::to_string(mark(board)));
}

/// The key below that field sets it again.
void softKeyDoesTheSame(Machine& board) {
    board.keys1->press(BTN_5);
    expect(waitUntil(1, [&] { return mark(board) >= 0; }),
           "expected a mark after the key, found " + std::to_string(mark(board)));
    board.expectShown(board.landingPage, "after-soft-key", 1);
}

/// The page's head, which is the same either way round, stands upside down in the last lines.
bool headStandsAtFoot(const Machine& board) {
    constexpr std::ptrdiff_t lines = 30;
    const auto& page = board.landingPage;
    const Picture shown = board.display->shown();
    return std::equal(page.colors.begin(), page.colors.begin() + lines * page.width, shown.colors.rbegin());
}

/// The same, with the board held upside down: field and key are where they are seen then.
void turnedOver(Machine& board) {
    const SetFlag rotated(board, "VarGuiRotate");
    expect(waitUntil(1, [&] { return headStandsAtFoot(board); }), "expected the page upside down");
    board.touch->tap(200, 400 - 384);
    expect(waitUntil(1, [&] { return mark(board) < 0; }),
           "expected no mark after the touch, found " + std::to_string(mark(board)));
    board.keys1->press(BTN_2);
    expect(waitUntil(1, [&] { return mark(board) >= 0; }),
           "expected a mark after the key, found " + std::to_string(mark(board)));
}

/// The host presses it when it reads the line; until it does, the board's time runs as fast as it can. The key has to
/// work while the others are locked.
void powerKey(Machine& board) {
    const SetFlag locked(board, "VarButtonsLocked");
    board.log.forget();
    KeyWatch key(Machine::powerPath);
    std::printf("please press the power key\n");
    expect(key.awaitRelease(KEY_POWER, 3600), "the host has not pressed the power key");
    board.log.await("USER Key: Event_ButtonSoftPowerPressed", 1);
    board.log.await("USER Key: Event_ButtonSoftPowerReleased", 1);
}

/// Pulled out while a key is down, and plugged in again.
void deviceComesBack(Machine& board) {
    const std::string path = Machine::keys2Path;
    board.log.forget();
    board.keys2.value().send({{EV_KEY, KEY_SELECT, 1}});
    board.log.await("USER Key: Event_ButtonSoftFunctionPressed", 1);
    board.keys2.reset();
    board.log.await("Device " + path + " is gone", 1);
    board.log.await("Open of device " + path + " failed, trying for up to", 1);
    board.log.await("USER Key: Event_ButtonSoftFunctionReleased", 1);
    board.plugKeys2();
    board.log.await("Open of device " + path + " suceeded after", 1);
    board.log.forget();
    board.keys2.value().press(KEY_MENU);
    board.log.await("USER Key: Event_ButtonSoftPagePressed", 1);
}

}  // namespace

void checkLateDevice(Machine& board, Report& report) {
    report.check("a device that appears late is used", [&] { lateDevice(board); });
}

void checkInput(Machine& board, Report& report) {
    report.check("a key record changes the page", [&] { keyChangesPage(board); });
    report.check("a touch reaches its widget", [&] { touchReachesWidget(board); });
    report.check("a key of the other key device too", [&] { softKeyDoesTheSame(board); });
    report.check("touches and keys follow the picture when it is turned over", [&] { turnedOver(board); });
    report.check("the page comes back when it is turned again",
                 [&] { board.expectShown(board.landingPage, "after-turning-back", 1); });
    report.check("the power key answers, though the keys are locked", [&] { powerKey(board); });
    report.check("a device that comes back is used", [&] { deviceComesBack(board); });
}

void checkEnd(Machine& board, Report& report) {
    report.check("SIGTERM ends it with status 0", [&] { board.expectGoodEnd(); });
}

}  // namespace Board
