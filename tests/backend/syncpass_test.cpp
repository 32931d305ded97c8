#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <set>

#include "backend/pendingslots.h"
#include "backend/syncpass.h"
#include "backend/var.h"
#include "recorder.h"

using namespace Backend;
using namespace Backend::Variable;

TEST(PendingSlots, AgreesWithASortedSet) {
    PendingSlots slots;
    std::set<unsigned> model;
    std::mt19937 random(7);
    std::uniform_int_distribution<unsigned> anywhere(0, PendingSlots::capacity - 1);
    const unsigned edges[] = {0, 63, 64, 4095, 4096, 65535};
    for (int i = 0; i < 20000; ++i) {
        const unsigned slot = i % 5 == 0 ? edges[random() % 6] : anywhere(random);
        if (random() % 3 != 0 && model.size() > 30) {
            const unsigned gone = *model.begin();
            slots.clear(gone);
            model.erase(gone);
        }
        slots.set(slot);
        model.insert(slot);
        const unsigned from = i % 3 == 0 ? edges[random() % 6] : anywhere(random);
        const auto expected = model.lower_bound(from);
        ASSERT_EQ(slots.next(from), expected == model.end() ? PendingSlots::none : *expected) << from;
    }
    for (unsigned slot : model) slots.clear(slot);
    EXPECT_TRUE(slots.empty());
    EXPECT_EQ(slots.next(0), PendingSlots::none);
    EXPECT_EQ(slots.next(PendingSlots::capacity), PendingSlots::none);
}

namespace {

/// A small world of variables and tables, each with an observer that may send a value to others.
class World {
  public:
    World() {
        for (unsigned i = 0; i < variableCount; ++i) {
            variables.emplace_back("V", static_cast<Slot>(i));
            slots.push_back(&variables[i]);
        }
        for (unsigned i = 0; i < tableCount; ++i) {
            tables.emplace_back("T", 0u, 0u, Array::ArrayType{nullptr, &area, 0, 0},
                                static_cast<Slot>(variableCount + i));
            tableList.push_back(&tables[i]);
        }
        for (unsigned i = 0; i < variableCount; ++i)
            observers.emplace_back(journal, std::to_string(i), [this, i] { spread(i); });
        for (unsigned i = 0; i < tableCount; ++i) observers.emplace_back(journal, "t" + std::to_string(i));
        for (auto& observer : observers) pointers.push_back(&observer);
        for (unsigned i = 0; i < variableCount; ++i) variables[i].attach(&pointers[i], 1);
        for (unsigned i = 0; i < tableCount; ++i) tables[i].attach(&pointers[variableCount + i], 1);
    }
    ~World() { pass(); }

    void send(unsigned variable) { variables[variable].receive(variables[variable].value() + 1); }
    void pass() { syncAll({slots.data(), variableCount, tableList.data(), tableCount}, false); }
    /// What a pass that walks every slot would do.
    void walk() {
        for (auto& variable : variables) variable.syncData(false);
        for (auto& table : tables) {
            if (table.isSync()) continue;
            table.syncData(false);
            table.notifyObserver();
        }
    }
    void spread(unsigned from) {
        for (auto [source, target] : spreading) {
            if (source != from) continue;
            if (target < variableCount)
                send(target);
            else
                tables[target - variableCount].receive();
        }
    }

    static constexpr unsigned variableCount = 200;
    static constexpr unsigned tableCount = 3;
    unsigned char bytes[1] = {};
    unsigned char* area = bytes;
    std::deque<IntVar> variables;
    std::deque<ArrayVar> tables;
    std::vector<Subject*> slots;
    std::vector<Array*> tableList;
    std::deque<Recorder> observers;
    std::vector<Engine::Observer*> pointers;
    std::vector<std::string> journal;
    std::vector<std::pair<unsigned, unsigned>> spreading;
};

}  // namespace

TEST(SyncPass, AChangeAheadIsToldInTheSamePassAndOneBehindInTheNext) {
    World world;
    world.spreading = {{50, 60}, {50, 10}, {50, 201}};
    world.send(50);
    world.tables[0].receive();
    world.pass();
    EXPECT_THAT(world.journal, testing::ElementsAre("50", "60", "t0", "t1"));
    world.pass();
    EXPECT_EQ(world.journal.back(), "10");
    EXPECT_EQ(world.journal.size(), 5u);
    world.pass();
    EXPECT_EQ(world.journal.size(), 5u);
}

TEST(SyncPass, HasTheVisibleOrderOfWalkingEverySlot) {
    std::mt19937 random(11);
    for (int round = 0; round < 30; ++round) {
        std::vector<std::pair<unsigned, unsigned>> spreading;
        for (int i = 0; i < 40; ++i) spreading.push_back({random() % 200, random() % 203});
        std::vector<unsigned> sent;
        for (int i = 0; i < 12; ++i) sent.push_back(static_cast<unsigned>(random() % 200));
        std::vector<std::string> journals[2];
        for (int walking = 0; walking < 2; ++walking) {
            World world;
            world.spreading = spreading;
            for (int frame = 0; frame < 4; ++frame) {
                if (frame < 2)
                    for (unsigned variable : sent) world.send(variable);
                walking != 0 ? world.walk() : world.pass();
                world.journal.push_back("frame");
            }
            journals[walking] = world.journal;
            world.spreading.clear();
        }
        ASSERT_EQ(journals[0], journals[1]);
    }
}

TEST(SyncPass, TheFirstPassTellsEveryoneOnce) {
    World world;
    world.send(7);
    syncAll({world.slots.data(), World::variableCount, world.tableList.data(), World::tableCount}, true);
    EXPECT_EQ(world.journal.size(), 203u);
    EXPECT_EQ(world.journal.front(), "0");
    EXPECT_EQ(world.journal.back(), "t2");
    world.pass();
    EXPECT_EQ(world.journal.size(), 203u);
}
