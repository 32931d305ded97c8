// What a second of frames is made of.
#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

void checkFrames(Machine& board, Report& report) {
    report.check("idle passes run at 60 Hz and draw nothing", [] {
        const long long pans = Display::pans(), waits = Display::waits();
        sleepFor(2);
        expectBetween("waits for the blank in two seconds", Display::waits() - waits, 119, 121);
        expectBetween("pans in two seconds", Display::pans() - pans, 0, 0);
    });
    report.check("pans run at 60 Hz", [&] {
        board.ask("set VarServiceModeDisplayTest 1");  // draws in each pass
        sleepFor(0.1);
        const long long pans = Display::pans(), waits = Display::waits();
        sleepFor(2);
        expectBetween("pans in two seconds", Display::pans() - pans, 119, 121);
        expectBetween("waits for the blank in two seconds", Display::waits() - waits, 0, 0);
    });
    report.check("the page comes back behind the test pictures", [&] {
        board.ask("set VarServiceModeDisplayTest 0");
        board.expectShown(board.landingPage, "after-display-test", 1);
    });
}

}  // namespace Board
