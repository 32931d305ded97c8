// The first and only process that the kernel starts on the emulated board: brings it up, runs the product through the
// checks, says on the console how each came out, and switches the board off.
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "tests/board/guest/machine.h"

namespace {

void takeConsole() {
    const int fd = ::open("/dev/console", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(fd, standard);
    if (fd > STDERR_FILENO) ::close(fd);
    ::setvbuf(stdout, nullptr, _IOLBF, 0);
}

void bringUp() {
    for (const char* module : {"evdev", "uinput", "boardfb", "boardcount"}) Board::loadModule(module);
}

void runChecks(Board::Report& report) {
    // Until the board is switched off, since reports ask it.
    static Board::Machine board;
    report.onFailure([] { return board.unexpectedEnd(); });
    board.display.emplace();
    board.plugKeys1();
    board.touch.emplace();
    Board::linkDevice("gpio-keys", Board::Machine::powerPath);
    board.startServer();
    checkStart(board, report);
    checkLateDevice(board, report);
    checkFrames(board, report);
    checkCost(board, report);
    checkInput(board, report);
    checkEnd(board, report);
    checkBadInput(board, report);
}

}  // namespace

int main() {
    Board::Report report;
    report.check("the board comes up", [] {
        Board::mountFileSystems();
        takeConsole();
        bringUp();
    });
    report.check("all checks have run", [&] { runChecks(report); });
    std::printf("board: %s\n", report.failed() ? "failed" : "passed");
    Board::powerOff();
}
