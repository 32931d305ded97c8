#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "embedded-gui-engine/observer.h"
#include "model/catalogue/constants.h"
#include "model/catalogue/enums.h"
#include "model/catalogue/events.h"
#include "model/catalogue/handler.h"
#include "model/catalogue/messages.h"
#include "model/catalogue/places.h"
#include "model/catalogue/variables.h"

namespace {

/// The name of a variable through its backend face.
const char* nameOf(const Backend::Variable::Subject* subject) {
    const auto inside = [subject](const auto& array) {
        for (const auto& variable : array)
            if (static_cast<const Backend::Variable::Subject*>(&variable) == subject) return variable.name();
        return static_cast<const char*>(nullptr);
    };
    if (const char* name = inside(Model::flags)) return name;
    if (const char* name = inside(Model::ints)) return name;
    if (const char* name = inside(Model::enums)) return name;
    if (const char* name = inside(Model::floats)) return name;
    return inside(Model::strings);
}

}  // namespace

TEST(GeneratedVariables, SlotsRiseByNameAndTablesComeLast) {
    std::string before;
    for (unsigned slot = 0; slot < Model::variables.slotCount; ++slot) {
        ASSERT_EQ(Model::variables.slots[slot]->slot(), slot);
        if (slot % 37 != 0) continue;  // finding a name is slow; every page of slots is met
        std::string name = nameOf(Model::variables.slots[slot]);
        const std::string table = name.substr(0, name.rfind('.'));
        if (Catalogue::findTable(table) != nullptr) name = table;  // a table's cells go by record
        ASSERT_LE(before, name);
        before = name;
    }
    for (unsigned i = 0; i < Model::variables.tableCount; ++i)
        ASSERT_EQ(Model::variables.tables[i]->slot(), Model::variables.slotCount + i);
}

TEST(GeneratedVariables, CountsByKind) {
    std::size_t cells = 0;
    for (const Catalogue::Table& table : Catalogue::tables) cells += table.rows * table.fields.size();
    const std::size_t scalars = static_cast<std::size_t>(
        std::count_if(Catalogue::values.begin(), Catalogue::values.end(), [](const Catalogue::Value& value) {
            return value.kind != Catalogue::Kind::Mask && value.kind != Catalogue::Kind::None;
        }));
    EXPECT_EQ(Model::variables.slotCount, scalars + cells);
    EXPECT_EQ(std::size(Model::flags) + std::size(Model::ints) + std::size(Model::enums) + std::size(Model::floats) +
                  std::size(Model::strings),
              Model::variables.slotCount);
    EXPECT_EQ(Catalogue::enumTypes.size(), 96u);
    EXPECT_EQ(Catalogue::messages.size(), 1329u);
    EXPECT_EQ(Catalogue::areas.size(), 23u);
}

TEST(GeneratedVariables, HaveTheirLimitsTypesAndNames) {
    EXPECT_STREQ(Model::VarZoomTargetValue.name(), "VarZoomTargetValue");
    EXPECT_EQ(Model::VarZoomTargetValue.max(), 1.0f);
    EXPECT_EQ(Model::VarSvgExportMajorLineThickness.min(), 0.1f);
    EXPECT_EQ(Model::VarRadioRSSI.min(), -200);
    EXPECT_EQ(Model::VarCamSpeedAct.max(), 1e38f);
    EXPECT_EQ(Model::VarCamExposureTimeAct.max(), 100000000);
    Model::VarRadioChannelMax.setValue(13);
    EXPECT_EQ(Model::VarRadioChannelTemp.max(), 13);
    EXPECT_FALSE(Model::VarRadioChannelTemp.setValue(14));
    EXPECT_EQ(Model::VarLanguage.size(), 4);
    EXPECT_EQ(Model::VarRadioRegion.properties(static_cast<int>(Model::RadioRegion::Unset)), 0);
    EXPECT_TRUE(Model::VarRadioRegion.setValue(20));
    EXPECT_EQ(Model::VarUserButton4_Name.size(), 7);
    EXPECT_EQ(Model::VarCamMonOutFunctionList.getVariable<char const*>(0, 4)->size(), 15);
}

TEST(GeneratedVariables, CellsAreReachedByColumnAndRecord) {
    // Two text columns side by side, five in one record, and a record's other kinds in between.
    auto* const name = Model::VarCamClipList0.getVariable<char const*>(2, 499);
    ASSERT_NE(name, nullptr);
    EXPECT_STREQ(name->name(), "VarCamClipList0.CamClipName");
    EXPECT_EQ(name->size(), 64);
    EXPECT_STREQ(Model::VarCamClipList0.getVariable<char const*>(5, 0)->name(), "VarCamClipList0.CamClipCodec");
    EXPECT_EQ(Model::VarCamClipList0.getVariable<char const*>(2, 500), nullptr);
    EXPECT_STREQ(Model::VarBluetoothDeviceList.getVariable<GuiType::CEnum<int>>(2, 7)->name(),
                 "VarBluetoothDeviceList.DeviceState");
    std::set<const void*> cells;
    for (unsigned row = 0; row < 100; ++row)
        for (unsigned column : {0u, 3u}) cells.insert(Model::VarSvgMajorValueList.getVariable<float>(column, row));
    EXPECT_EQ(cells.size(), 200u);
}

TEST(GeneratedHandler, SubscribesTheRightIdsInOrder) {
    const auto& ids = Model::handlerTable.subscriptions;
    ASSERT_EQ(ids.size(), 1291u);
    EXPECT_EQ(ids.front(), 7);
    EXPECT_THAT(std::vector<int>(ids.end() - 5, ids.end()), testing::ElementsAre(395, 396, 465, 31, 776));
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end() - 5));
    for (const int never : {0, 1, 6, 122, 123, 404, 861, 870, 1311, 1328})
        EXPECT_EQ(std::count(ids.begin(), ids.end(), never), 0) << never;
}

TEST(GeneratedHandler, RowsLieInTheirAreasUnderTheirIds) {
    const auto& table = Model::handlerTable;
    for (const Backend::HandlerRow& row : table.rows) {
        ASSERT_LT(row.area, table.areas.size());
        ASSERT_LE(row.offset + row.size, table.areas[row.area].size);
    }
    for (std::uint32_t id = 0; id < table.messageNames.size(); ++id)
        for (const Backend::HandlerRow& row : table.rowsOf(id)) ASSERT_EQ(row.id, id);
    EXPECT_EQ(table.rowsOf(Messages::VarFocusMotorChanged).size(), 28u);
    EXPECT_EQ(table.rowsOf(Messages::VarLensTableIrisChanged).size(), 9u);
    EXPECT_TRUE(table.rowsOf(5).empty());
    EXPECT_TRUE(table.rowsOf(0xffffffff).empty());
}

TEST(GeneratedConstants, ToldPlacesAndNames) {
    EXPECT_EQ(Places::VarZoomTargetValue.offset, 56u);
    EXPECT_EQ(Places::VarZoomTargetValue.id, 9);
    EXPECT_EQ(Places::VarFocusMotor_State.offset, 4u);
    EXPECT_EQ(Messages::VarGuiRotateChanged, 342u);
    EXPECT_EQ(Model::Event_ButtonConfirmPressed, 128u);
    EXPECT_EQ(Catalogue::userEventNames.size(), 267u);
    EXPECT_STREQ(Catalogue::userEventNames[266], "Event_CamZoomUserButtonNotSupportedTrue");
    EXPECT_STREQ(Catalogue::messages[1328].name, "VarAppDiopterLogLevelChanged");

    const Catalogue::Value* motor = Catalogue::findValue("VarFocusMotor");
    ASSERT_NE(motor, nullptr);
    EXPECT_STREQ(motor->name, "VarFocusMotor.State");
    EXPECT_STREQ(Catalogue::entryName(Catalogue::enumTypes[static_cast<std::size_t>(motor->enumType)], 3), "Ready");
    EXPECT_STREQ(Catalogue::findValue("VarLensTableIris")->name, "VarLensTableIris.TableActive");
    EXPECT_EQ(Catalogue::findValue("VarNothing"), nullptr);
    const Catalogue::Table* clips = Catalogue::findTable("VarCamClipList1");
    ASSERT_NE(clips, nullptr);
    EXPECT_STREQ(Catalogue::values[static_cast<std::size_t>(clips->counter)].name, "VarCamClipList1Size");
}
