// What the product executes: counted by the processor, in user mode and of the product alone, so that the figures are
// the same on a busy host and a free one. The budget stands in a file of its own.
#include <signal.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "apps/common/sharedmemory/sharedmemory.h"
#include "model/catalogue/constants.h"
#include "tests/board/guest/expect.h"
#include "tests/board/guest/machine.h"

namespace Board {

namespace {

constexpr long long tooMuch = 130, cheaper = 70, tooLittle = 50;  // percent of the budget

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
    expect(found > 0, "nothing has been counted for " + name + ", found " + std::to_string(found));
    const long long percent = found * 100 / entry->second;
    const std::string line = std::to_string(entry->second) + " instructions for " + name;
    std::printf("cost %s %lld, %lld %% of its budget\n", name.c_str(), found, percent);
    if (percent < cheaper)
        std::printf("cost %s: it has become cheaper; lower its line in tests/board/budget\n", name.c_str());
    expect(percent >= tooLittle, "expected " + line + " and at most half less, found " + std::to_string(found) +
                                     ": the counting is broken, or the line must be lowered");
    expect(percent <= tooMuch, "expected " + line + " and at most 30 % more, found " + std::to_string(found));
}

/// What has been executed and shown.
struct Cost {
    long long instructions;
    long long passes;
    long long pans;
};

/// From its making on.
class Stretch {
  public:
    Cost stop() const {
        const Cost end = read();
        return {end.instructions - start_.instructions, end.passes - start_.passes, end.pans - start_.pans};
    }

  private:
    static Cost read() {
        return {static_cast<long long>(moduleNumber("boardcount", "instructions")), Display::passes(), Display::pans()};
    }

    Cost start_ = read();
};

long long idlePass() {
    const Stretch stretch;
    sleepFor(2);
    const Cost idle = stretch.stop();
    expectBetween("passes of two idle seconds", idle.passes, 119, 121);
    return idle.instructions / idle.passes;
}

/// A notice of it makes the next pass draw the whole page, though no value has changed.
const Catalogue::Value& redrawValue() {
    return *Catalogue::findValue("VarScreenSaverActive");
}

void announce(Machine& board, const Catalogue::Value& value) {
    board.ask("send " + std::to_string(value.id));
}

/// With the pass that it is drawn in.
long long redraw(Machine& board, long long idle) {
    constexpr int count = 20;
    const Stretch stretch;
    for (int i = 0; i < count; ++i) {
        announce(board, redrawValue());
        sleepFor(0.05);
    }
    const Cost drawn = stretch.stop();
    expectBetween("pans for 20 forced redraws", drawn.pans, count, count);
    return (drawn.instructions - (drawn.passes - count) * idle) / count;
}

using Values = std::vector<const Catalogue::Value*>;

bool isLive(const Catalogue::Value& value) {
    if (value.area == Catalogue::noArea) return false;
    const std::string area = Catalogue::areas[static_cast<std::size_t>(value.area)].name;
    return area == "MemDynamic" || area == "MemDistanceMeasure" || area == "MemPersistent";
}

/// A hundred numbers of the live and the lasting values.
Values hundredValues() {
    constexpr std::size_t count = 100;
    Values chosen;
    for (const Catalogue::Value& value : Catalogue::values)
        if (value.kind == Catalogue::Kind::Float && isLive(value) && chosen.size() < count) chosen.push_back(&value);
    expect(chosen.size() == count, "the catalogue has no hundred numbers in these areas");
    return chosen;
}

/// Numbers with another value, straight in the areas, as the server writes them. They get their own back at the end.
class ChangedNumbers {
  public:
    ChangedNumbers(const Values& values, float number) {
        for (const auto& area : Catalogue::areas) {
            areas_.emplace_back(new SharedMemory(area.name, area.size));
            areas_.back()->open();
        }
        for (const Catalogue::Value* value : values) {
            auto* area = static_cast<unsigned char*>(areas_[static_cast<std::size_t>(value->area)]->address());
            before_.emplace_back(area + value->offset, 0.0F);
            std::memcpy(&before_.back().second, before_.back().first, sizeof number);
            std::memcpy(before_.back().first, &number, sizeof number);
        }
    }
    ChangedNumbers(const ChangedNumbers&) = delete;
    ChangedNumbers& operator=(const ChangedNumbers&) = delete;
    ~ChangedNumbers() {
        for (const auto& [place, number] : before_) std::memcpy(place, &number, sizeof number);
    }

  private:
    std::vector<std::unique_ptr<SharedMemory>> areas_;
    std::vector<std::pair<unsigned char*, float>> before_;
};

/// A program that stands still.
class Stopped {
  public:
    explicit Stopped(Unit::ChildProcess& program) : program_(program) { program_.signal(SIGSTOP); }
    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;
    ~Stopped() { program_.signal(SIGCONT); }

  private:
    Unit::ChildProcess& program_;
};

struct Answer {
    Cost cost;
    Picture picture;
};

/// The notices wait in the product's socket, and the changed numbers in the areas, before the product may go on.
Answer answerAtOnce(Machine& board, const Values& changed, const Values& announced) {
    std::optional<Stopped> product(board.product);
    for (const Catalogue::Value* value : announced) announce(board, *value);
    sleepFor(0.1);
    const Stopped server(board.server);
    const ChangedNumbers numbers(changed, 0.25F);
    const Stretch stretch;
    product.reset();
    sleepFor(0.1);
    return {stretch.stop(), board.display->shown()};
}

/// Without the redraws that follow: they are measured on the very picture that the changes lead to.
long long valueChanges(Machine& board, const Values& values, long long idle) {
    const Answer changes = answerAtOnce(board, values, values);
    const Answer redraw = answerAtOnce(board, values, {&redrawValue()});
    expectBetween("pans after the changes", changes.cost.pans, 1, changes.cost.passes);
    expectBetween("pans for a forced redraw", redraw.cost.pans, 1, 1);
    expect(redraw.picture == changes.picture, "expected the redraw to show the picture that the changes led to");
    const long long drawing = redraw.cost.instructions - (redraw.cost.passes - 1) * idle;
    return changes.cost.instructions - (changes.cost.passes - changes.cost.pans) * idle - changes.cost.pans * drawing;
}

}  // namespace

void checkCost(Machine& board, Report& report) {
    const Values values = hundredValues();
    long long idle = 0;
    report.check("the cost of an idle pass", [&] { compare("idle-pass", idle = idlePass()); });
    report.check("the cost of a full redraw", [&] { compare("redraw", redraw(board, idle)); });
    report.check("the cost of 100 value changes", [&] { compare("100-values", valueChanges(board, values, idle)); });
    report.check("the page is as before the changes", [&] {
        for (const Catalogue::Value* value : values) announce(board, *value);
        board.expectShown(board.landingPage, "after-changes", 5);
    });
}

}  // namespace Board
