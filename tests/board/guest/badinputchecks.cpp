// A board that is not as it should be: what the product is to do, each with a start of its own.
#include <linux/input-event-codes.h>

#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

/// The product gives up at its start: by the uncaught exception that each fatal condition ends in.
void refuses(Machine& board, const std::string& text) {
    board.startProduct();
    const std::string end = board.awaitEnd();
    expect(end.starts_with("by signal 6"), "expected an end by signal 6, found an end " + end);
    board.log.await(text, 1);
}

/// The page stands in the left upper corner, as far as there is room, and nothing beside it.
void drawsWhatFits(Machine& board, unsigned width, unsigned height) {
    board.changeDisplay("width=" + std::to_string(width) + " height=" + std::to_string(height));
    board.display.emplace();
    board.startProduct();
    board.awaitLandingPage();
    board.showLandingPage();
    board.expectShown(onDisplay(board.landingPage, width, height, false),
                      "display-" + std::to_string(width) + "x" + std::to_string(height), 1);
    board.expectGoodEnd();
}

void withoutTouch(Machine& board) {
    board.touch.reset();
    board.startProduct();
    board.log.await("Open of device /dev/input/touchscreen0 permanently failed", 20);
    board.keys2->press(KEY_MENU);
    board.log.await("USER Page: Home_Camera", 2);
    board.expectGoodEnd();
}

}  // namespace

void checkBadInput(Machine& board, Report& report) {
    report.check("without a touch panel the rest works", [&] { withoutTouch(board); });
    report.check("without a framebuffer it says so and ends", [&] {
        board.removeDisplay();
        refuses(board, "frambuffer open: No such file or directory");
        loadModule("boardfb");
    });
    report.check("without the vertical blank it says so and ends", [&] {
        board.changeDisplay("vsync=0");
        refuses(board, "vsync: Inappropriate ioctl for device");
    });
    for (const std::string depth : {"16", "24"})
        report.check("a display of " + depth + " bits is refused", [&] {
            board.changeDisplay("depth=" + depth);
            refuses(board, "the display has " + depth + " bits a pixel");
        });
    report.check("a larger display is drawn on", [&] { drawsWhatFits(board, 320, 480); });
    report.check("a smaller display is drawn on", [&] { drawsWhatFits(board, 160, 240); });
}

}  // namespace Board
