// From the start of the product to its first page.
#include <fcntl.h>
#include <semaphore.h>

#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

constexpr const char* gateName = "/message-broker-ready";

/// The server's gate in our hands: who waits there comes in when we let go.
class HeldGate {
  public:
    HeldGate() : gate_(::sem_open(gateName, 0)) {
        expect(gate_ != SEM_FAILED, "the server has no gate");
        ::sem_wait(gate_);
    }
    HeldGate(const HeldGate&) = delete;
    HeldGate& operator=(const HeldGate&) = delete;
    ~HeldGate() {
        ::sem_post(gate_);
        ::sem_close(gate_);
    }

  private:
    sem_t* gate_;
};

Picture bootLoaderPicture(unsigned width, unsigned height) {
    Picture picture = {width, height, {}};
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x) picture.colors.push_back(x << 16 | y / 2 << 8 | 0x55);
    return picture;
}

/// The product is held at the gate for a second: what it has done to the display until then shows.
void bootLoaderPictureStays(Machine& board, const Picture& before) {
    const HeldGate gate;
    const long long waits = Display::waits();
    board.startProduct();
    board.log.await("Waiting for server", 10);
    sleepFor(1);
    expect(board.display->shownLine() == 0, "expected the first buffer, which holds the picture");
    board.expectShown(before, "boot-loader", 0);
    expectBetween("waits for the blank before it takes the display", Display::waits() - waits, 1, 1);
}

/// From its first pixel on the logo is complete within a tenth of a second, and stands two seconds. A page follows it.
void logoFollows(Machine& board, const Picture& before) {
    const Picture logo = onDisplay(loadPicture("/usr/share/qz-boot-logo.png"), before.width, before.height, true);
    expect(waitUntil(20, [&] { return board.display->shown() != before; }),
           "expected the logo, found the picture before it");
    board.expectShown(logo, "logo", 0.1);
    const double start = now();
    waitUntil(20, [&] { return board.display->shown() != logo; });
    expectBetween("milliseconds of the logo", static_cast<long long>((now() - start) * 1000), 1850, 2150);
    if (board.log.has("USER Page: ")) return;
    tellPicture("after-logo", board.display->shown());
    throw Failure("expected the first page behind the logo, found another picture");
}

}  // namespace

void checkStart(Machine& board, Report& report) {
    const Picture before = bootLoaderPicture(board.display->width(), board.display->height());
    board.display->paint(before);
    report.check("the boot loader's picture stays until the logo", [&] { bootLoaderPictureStays(board, before); });
    report.check("the logo stands for two seconds, until the first page", [&] { logoFollows(board, before); });
    report.check("the landing page is in the shown buffer", [&] {
        board.awaitLandingPage();
        board.showLandingPage();
        board.expectShown(board.landingPage, "landing-page", 1);
    });
}

}  // namespace Board
