#include <gtest/gtest.h>

#include <cstring>

#include "backend/var.h"
#include "recorder.h"

using namespace Backend;
using namespace Backend::Variable;

namespace {

constexpr unsigned rows = 3;

struct Record {
    char text[6];
    unsigned char flag;
    int number;
    float fraction;
};

/// A count word, then three records, of (text, number, fraction, other number, flag).
struct Table {
    struct Area {
        int count;
        Record records[rows];
    } area = {};
    unsigned char* base = reinterpret_cast<unsigned char*>(&area);
    char block[rows * 6] = {};
    StringVar texts[rows] = {StringVar("T.Text", noSlot, block, 6), StringVar("T.Text", noSlot, block + 6, 6),
                             StringVar("T.Text", noSlot, block + 12, 6)};
    IntVar ints[rows * 2] = {IntVar("T.Number"), IntVar("T.Other"),  IntVar("T.Number"),
                             IntVar("T.Other"),  IntVar("T.Number"), IntVar("T.Other")};
    FloatVar floats[rows] = {FloatVar("T.Fraction"), FloatVar("T.Fraction"), FloatVar("T.Fraction")};
    BoolVar flags[rows] = {BoolVar("T.Flag"), BoolVar("T.Flag"), BoolVar("T.Flag")};
    Column columns[5] = {{CellKind::String, texts, 1, offsetof(Record, text), 6},
                         {CellKind::Int, ints, 2, offsetof(Record, number), 4},
                         {CellKind::Float, floats, 1, offsetof(Record, fraction), 4},
                         {CellKind::Int, ints + 1, 2, offsetof(Record, number), 4},
                         {CellKind::Flag, flags, 1, offsetof(Record, flag), 1}};
    MemoryMappedRead<unsigned int*, unsigned int> counter{&base, 0};
    ArrayVar array{"T", 5, rows, {columns, &base, offsetof(Area, records), sizeof(Record)}, noSlot, &counter};
};

}  // namespace

TEST(Array, TakesItsCellsFromTheArea) {
    static Table t;
    t.area.count = 2;
    std::memcpy(t.area.records[1].text, "abcdef", 6);  // no terminator
    t.area.records[1].number = -5;
    t.area.records[2].fraction = 1.5f;
    t.area.records[0].flag = 0xff;
    t.array.receive();
    EXPECT_STREQ(t.array.getVariable<char const*>(0, 1)->value(), "abcde");
    EXPECT_EQ(t.array.getVariable<int>(1, 1)->value(), -5);
    EXPECT_EQ(t.array.getVariable<int>(3, 1), &t.ints[3]);
    EXPECT_EQ(t.array.getVariable<float>(2, 2)->value(), 1.5f);
    EXPECT_TRUE(t.array.getVariable<bool>(4, 0)->value());
    EXPECT_EQ(t.array.getVariable<int>(2, 0), nullptr);  // a column of floats
    EXPECT_EQ(t.array.getVariable<int>(1, 3), nullptr);
    EXPECT_EQ(t.array.getVariable<int>(5, 0), nullptr);
    EXPECT_EQ(t.array.address(), reinterpret_cast<unsigned char*>(&t.area.records[0]));
    EXPECT_EQ(t.array.width(), sizeof(Record));
    EXPECT_EQ(t.array.rowSize(), rows);
    EXPECT_EQ(t.array.columnSize(), 5u);
}

TEST(Array, TheLiveCountStaysInsideTheTable) {
    static Table t;
    for (const auto& [count, live] : {std::pair{0, 0u}, {2, 2u}, {3, 3u}, {4, 3u}, {0x7fffffff, 3u}, {-1, 0u}}) {
        t.area.count = count;
        EXPECT_EQ(t.array.rowDimension(), live) << count;
        EXPECT_EQ(t.array.properties(2) & 1, live == 3 ? 1 : 0);
        EXPECT_EQ(t.array.value(), static_cast<int>(live));
    }
    EXPECT_FALSE(t.array.setValue(1));
    t.array.configCounter(nullptr);
    EXPECT_EQ(t.array.rowDimension(), rows);
    EXPECT_EQ(t.array.properties(3), 0);
}

TEST(Array, AMessageAlwaysLeavesItOutOfSync) {
    static Table t;
    std::vector<std::string> journal;
    Recorder observer(journal, "table");
    Engine::Observer* const observers[] = {&observer};
    t.array.attach(observers, 1);
    EXPECT_TRUE(t.array.isSync());
    t.array.receive();
    EXPECT_FALSE(t.array.isSync());
    t.array.syncData(false);
    EXPECT_TRUE(t.array.isSync());
    EXPECT_TRUE(journal.empty());
    t.array.notifyObserver();
    EXPECT_EQ(journal.size(), 1u);
}

TEST(Array, NothingIsReadBeforeTheAreaIsOpen) {
    static Table t;
    t.base = nullptr;
    t.array.receive();
    EXPECT_TRUE(t.array.isSync());
    EXPECT_EQ(t.array.address(), nullptr);
    EXPECT_EQ(t.array.rowDimension(), rows);
}
