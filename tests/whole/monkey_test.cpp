// A seeded monkey. TERN_MONKEY_STEPS and TERN_MONKEY_SEED choose a longer or another run; the same two numbers give the
// same run.
#include "tests/whole/monkey.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

unsigned long fromEnvironment(const char* name, unsigned long otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::strtoul(text, nullptr, 10) : otherwise;
}

TEST(Monkey, FindsNothing) {
    const auto steps = fromEnvironment("TERN_MONKEY_STEPS", 2000);
    const auto seed = static_cast<unsigned>(fromEnvironment("TERN_MONKEY_SEED", 1));
    WholeUnit unit;
    unit.settle();
    Monkey monkey(unit, seed);
    unsigned long step = 0;
    try {
        while (step < steps && monkey.step()) ++step;
    } catch (const std::exception& end) {
        FAIL() << "seed " << seed << ", step " << step << ": the program ends: " << end.what();
    }
    EXPECT_EQ(monkey.problem(), "") << "seed " << seed << ", step " << step;
    std::printf("%lu steps, seed %u: %s\n", step, seed, monkey.summary().c_str());
}

}  // namespace
