// What a second of frames is made of.
#include <signal.h>

#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

void bothBuffersInTurn(const Machine& board) {
    const unsigned line = board.display->shownLine();
    expect(waitUntil(0.1, [&] { return board.display->shownLine() != line; }),
           "expected pictures in two buffers in turn, found all of them at line " + std::to_string(line));
}

/// A signal ends the kernel's wait for the blank early: the product goes on as if the blank had come.
void goesOnWhenInterrupted(Machine& board) {
    for (int i = 0; i < 10; ++i) {
        board.product.signal(SIGSTOP);
        board.product.signal(SIGCONT);
        sleepFor(0.023);
    }
    const long long passes = Display::passes();
    sleepFor(0.5);
    expectBetween("passes in half a second", Display::passes() - passes, 29, 31);
}

}  // namespace

void checkFrames(Machine& board, Report& report) {
    report.check("idle passes run at 60 Hz and draw nothing", [&] {
        const std::string missed = board.ask("get VarGuiMissedFrames");
        sleepFor(0.1);
        const long long pans = Display::pans(), waits = Display::waits();
        sleepFor(2);
        expectBetween("waits for the blank in two seconds", Display::waits() - waits, 119, 121);
        expectBetween("pans in two seconds", Display::pans() - pans, 0, 0);
        const std::string missedNow = board.ask("get VarGuiMissedFrames");
        expect(missedNow == missed, "expected no missed frame, found " + missedNow + " after " + missed);
    });
    report.check("an interrupted wait for the blank does no harm", [&] { goesOnWhenInterrupted(board); });
    report.check("pans run at 60 Hz", [&] {
        board.ask("set VarServiceModeDisplayTest 1");  // draws in each pass
        sleepFor(0.1);
        const long long pans = Display::pans(), waits = Display::waits();
        sleepFor(2);
        expectBetween("pans in two seconds", Display::pans() - pans, 119, 121);
        expectBetween("waits for the blank in two seconds", Display::waits() - waits, 0, 0);
        bothBuffersInTurn(board);
    });
    report.check("the red test picture is red", [&] {
        const unsigned width = board.display->width(), height = board.display->height();
        board.expectShown({width, height, std::vector<std::uint32_t>(std::size_t{width} * height, 0xff0000)}, "red", 1);
    });
    report.check("an interrupted pan does no harm", [&] { goesOnWhenInterrupted(board); });
    report.check("the page comes back behind the test pictures", [&] {
        board.ask("set VarServiceModeDisplayTest 0");
        board.expectShown(board.landingPage, "after-display-test", 1);
    });
}

}  // namespace Board
