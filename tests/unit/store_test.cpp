#include "unit/server/store.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/unit/world.h"

using Unit::Store;

namespace {

std::string whyNot(const std::string& name) {
    std::string problem;
    EXPECT_FALSE(Store::find(name, problem)) << name;
    return problem;
}

bool takes(const char* name, const char* value) {
    std::string problem;
    return Store::parse(*Store::find(name), value, problem).has_value();
}

}  // namespace

TEST(Store, KnowsEveryPlaceByNameAndKeepsItInsideItsArea) {
    for (const auto& value : Catalogue::values) {
        if (value.area == Catalogue::noArea || value.kind == Catalogue::Kind::None) continue;
        const auto cell = Store::find(value.name);
        ASSERT_TRUE(cell) << value.name;
        EXPECT_LE(cell->offset + cell->size, Catalogue::areas[static_cast<std::size_t>(cell->area)].size) << value.name;
    }
    for (const auto& table : Catalogue::tables)
        for (const auto& field : table.fields) {
            const std::string name = std::string(table.name) + "[" + std::to_string(table.rows - 1) + "]." + field.name;
            const auto cell = Store::find(name);
            ASSERT_TRUE(cell) << name;
            EXPECT_LE(cell->offset + cell->size, Catalogue::areas[static_cast<std::size_t>(cell->area)].size) << name;
        }
}

TEST(Store, RefusesWhatIsNotThereAndSaysWhatToDo) {
    EXPECT_NE(whyNot("VarKnobAsignment").find("Did you mean VarKnobAssignment?"), std::string::npos);
    EXPECT_NE(whyNot("VarCamSpeedList").find("NAME[ROW]"), std::string::npos);
    EXPECT_NE(whyNot("VarCamSpeedList[120]").find("0 to 119"), std::string::npos);
    EXPECT_NE(whyNot("VarCamClipList0[0].Name").find("CamClipName"), std::string::npos);
    whyNot("VarCamSpeedList[-1]");
    whyNot("VarCamSpeedList[1");
    whyNot("VarCamSpeedList[");
    whyNot("VarLoadLensFile");
    whyNot("");
}

TEST(Store, ChecksValuesAgainstKindAndLimits) {
    EXPECT_TRUE(takes("VarKnob", "1"));
    EXPECT_FALSE(takes("VarKnob", "1.01"));
    EXPECT_FALSE(takes("VarKnob", "nan"));
    EXPECT_FALSE(takes("VarKnob", ""));
    EXPECT_TRUE(takes("VarLanguage", "German"));
    EXPECT_TRUE(takes("VarLanguage", "3"));
    EXPECT_FALSE(takes("VarLanguage", "77"));
    EXPECT_TRUE(takes("VarGuiRotate", "true"));
    EXPECT_FALSE(takes("VarGuiRotate", "2"));
    EXPECT_FALSE(takes("VarBattPercent", "3.5"));
    EXPECT_FALSE(takes("VarBattPercent", "99999999999"));
    EXPECT_TRUE(takes("VarUserButton4_Name", "123456"));
    EXPECT_FALSE(takes("VarUserButton4_Name", "1234567"));
    EXPECT_TRUE(takes("VarKnobAssignmentFlags", "0f00"));
    EXPECT_FALSE(takes("VarKnobAssignmentFlags", "0f0"));
    EXPECT_FALSE(takes("VarKnobAssignmentFlags", "0g00"));
}

TEST(Store, NotesOnlyRealChangesAndEachIdOnce) {
    World world;
    Store& store = world->store();
    const auto state = *Store::find("VarFocusMotor.State");
    const auto gear = *Store::find("VarFocusMotor.GearTeethAct");
    store.clearNotices();
    store.setInteger(state, store.integer(state));
    EXPECT_TRUE(store.notices().empty());
    store.setInteger(state, 6);
    store.setInteger(gear, 77);
    EXPECT_EQ(store.notices(), std::vector<std::uint16_t>{state.id});
}

TEST(Store, CutsTextsBetweenCharactersAndReadsUnendedOnes) {
    World world;
    Store& store = world->store();
    const auto name = *Store::find("VarUserButton4_Name");
    store.setText(name, "12345\u221e");  // the last character would lose its end
    EXPECT_EQ(store.text(name), "12345");
    std::memset(store.bytes(name).data(), 'x', name.size);
    EXPECT_EQ(store.text(name), std::string(name.size, 'x'));
}
