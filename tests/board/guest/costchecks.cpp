// What the product executes: counted by the processor, in user mode and of the product alone, so that the figures are
// the same on a busy host and a free one. The budget stands in a file of its own.
#include <signal.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <vector>

#include "apps/common/sharedmemory/sharedmemory.h"
#include "model/catalogue/constants.h"
#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

constexpr long long tooMuch = 130, tooLittle = 70;  // percent of the budget

std::map<std::string, long long> readBudget() {
    std::map<std::string, long long> budget;
    std::ifstream file("/board/budget");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string name;
        long long count = 0;
        if (!line.starts_with('#') && words >> name >> count) budget[name] = count;
    }
    return budget;
}

void compare(const std::string& name, long long found) {
    static const auto budget = readBudget();
    const auto entry = budget.find(name);
    expect(entry != budget.end() && entry->second > 0,
           "the budget has no line for " + name + ", found " + std::to_string(found));
    const long long percent = found * 100 / entry->second;
    std::printf("cost %s %lld, %lld %% of its budget\n", name.c_str(), found, percent);
    if (percent < tooLittle)
        std::printf("cost %s: it has become cheaper; lower its line in tests/board/budget\n", name.c_str());
    expect(percent <= tooMuch, "expected " + std::to_string(entry->second) + " instructions for " + name +
                                   " and at most 30 % more, found " + std::to_string(found));
}

/// What has been executed and shown between its making and `stop`.
struct Stretch {
    long long instructions = count();
    long long passes = Display::passes();
    long long pans = Display::pans();

    void stop() {
        instructions = count() - instructions;
        passes = Display::passes() - passes;
        pans = Display::pans() - pans;
    }

  private:
    static long long count() { return static_cast<long long>(moduleNumber("boardcount", "instructions")); }
};

long long idlePass() {
    Stretch idle;
    sleepFor(2);
    idle.stop();
    expectBetween("passes of two idle seconds", idle.passes, 119, 121);
    return idle.instructions / idle.passes;
}

/// A notice that makes the next pass draw the whole page, though no value has changed; with the pass that it is drawn
/// in.
long long redraw(Machine& board, long long idle) {
    constexpr int count = 20;
    const std::string request = "send " + std::to_string(Catalogue::findValue("VarScreenSaverActive")->id);
    Stretch drawn;
    for (int i = 0; i < count; ++i) {
        board.ask(request);
        sleepFor(0.05);
    }
    drawn.stop();
    expectBetween("pans for 20 forced redraws", drawn.pans, count, count);
    return (drawn.instructions - (drawn.passes - count) * idle) / count;
}

/// A hundred numbers of the live and the lasting values, straight in the areas, as the server writes them.
class HundredValues {
  public:
    HundredValues() {
        for (const Catalogue::Value& value : Catalogue::values)
            if (value.kind == Catalogue::Kind::Float && isLive(value) && chosen_.size() < count)
                chosen_.push_back(&value);
        expect(chosen_.size() == count, "the catalogue has no hundred numbers in these areas");
        for (std::size_t i = 0; i < Catalogue::areas.size(); ++i) {
            areas_.emplace_back(new SharedMemory(Catalogue::areas[i].name, Catalogue::areas[i].size));
            areas_.back()->open();
        }
        for (std::size_t i = 0; i < count; ++i) std::memcpy(&before_[i], place(i), sizeof(float));
    }

    void write(float number) {
        for (std::size_t i = 0; i < count; ++i) std::memcpy(place(i), &number, sizeof number);
    }
    void restore() {
        for (std::size_t i = 0; i < count; ++i) std::memcpy(place(i), &before_[i], sizeof(float));
    }
    void announce(Machine& board) const {
        for (const Catalogue::Value* value : chosen_) board.ask("send " + std::to_string(value->id));
    }

    static constexpr std::size_t count = 100;

  private:
    static bool isLive(const Catalogue::Value& value) {
        if (value.area == Catalogue::noArea) return false;
        const std::string area = Catalogue::areas[static_cast<std::size_t>(value.area)].name;
        return area == "MemDynamic" || area == "MemDistanceMeasure" || area == "MemPersistent";
    }
    unsigned char* place(std::size_t index) {
        const Catalogue::Value& value = *chosen_[index];
        return static_cast<unsigned char*>(areas_[static_cast<std::size_t>(value.area)]->address()) + value.offset;
    }

    std::vector<const Catalogue::Value*> chosen_;
    std::vector<std::unique_ptr<SharedMemory>> areas_;
    std::array<float, count> before_{};
};

/// The notices wait in the product's socket, and the values in the areas, before the product may go on.
Stretch changeAtOnce(Machine& board, HundredValues& values, float number) {
    board.product.signal(SIGSTOP);
    values.announce(board);
    sleepFor(0.1);
    board.server.signal(SIGSTOP);
    values.write(number);
    Stretch changed;
    board.product.signal(SIGCONT);
    sleepFor(0.1);
    changed.stop();
    values.restore();
    board.server.signal(SIGCONT);
    return changed;
}

long long hundredValues(Machine& board, long long idle, long long drawing) {
    HundredValues values;
    const Stretch changed = changeAtOnce(board, values, 0.25F);
    values.announce(board);
    sleepFor(0.5);
    expectBetween("pans after the changes", changed.pans, 1, changed.passes);
    return changed.instructions - (changed.passes - changed.pans) * idle - changed.pans * drawing;
}

}  // namespace

void checkCost(Machine& board, Report& report) {
    long long idle = 0, drawing = 0;
    report.check("the cost of an idle pass", [&] { compare("idle-pass", idle = idlePass()); });
    report.check("the cost of a full redraw", [&] { compare("redraw", drawing = redraw(board, idle)); });
    report.check("the cost of 100 value changes", [&] { compare("100-values", hundredValues(board, idle, drawing)); });
    report.check("the page is as before the changes",
                 [&] { board.expectShown(board.landingPage, "after-changes", 5); });
}

}  // namespace Board
