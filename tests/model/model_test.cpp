// The compiled demonstration pages on the real engine and variables.
#include <gtest/gtest.h>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/texttable.h"
#include "model.h"
#include "model/catalogue/events.h"
#include "model/runtime/generated.h"
#include "model/texts.h"

namespace {

std::int64_t clockNanoseconds = 1'000'000'000;

/// A manager over the compiled model. Objects are static, so each test sets the variables that it looks at.
class ModelTest : public testing::Test {
  protected:
    ModelTest() : screen_(240, 400, 8, pixels_, 0) {
        Engine::hooks().steadyNanoseconds = [] { return clockNanoseconds; };
        Engine::GuiManager::setInstance(&manager_);
        Engine::setTextTable(Texts::tables, &Model::VarLanguage);
        manager_.setPainter(&screen_);
        manager_.setModelHooks({[] { Model::syncFrame(); }, [] { Model::link(Model::modelLink, Model::variables); }});
        manager_.linkModel();
        manager_.finishInitialization();
        manager_.setContainers(Model::modelLink.containers);
    }
    ~ModelTest() override { Engine::GuiManager::setInstance(nullptr); }

    void post(unsigned event) {
        manager_.postEvent(event);
        manager_.processEvents(true);
    }
    void wait(int milliseconds) {
        clockNanoseconds += std::int64_t{milliseconds} * 1'000'000;
        manager_.processEvents(true);
    }

    unsigned int pixels_[240 * 400] = {};
    Engine::Framebuffer<unsigned int> screen_;
    Engine::GuiManager manager_;
};

TEST_F(ModelTest, PropertiesFollowTheirRules) {
    Model::VarCamState.setValue(1);
    EXPECT_EQ(Model::chosen->currentForeground(), 0xffff0000u);
    Model::VarCamState.setValue(4);
    Model::VarGuiDesignIsNightStyle.setValue(true);
    EXPECT_EQ(Model::chosen->currentForeground(), 0xffffffffu);
    Model::VarGuiDesignIsNightStyle.setValue(false);
    EXPECT_EQ(Model::chosen->currentForeground(), 0xff000000u);
    EXPECT_EQ(Model::rulesPage->backgroundColor(), 0xffffffffu);

    const auto shown = [] { return Model::chosen->hasFlag(Engine::Object::FlagEnabled); };
    Model::VarCamBeepEnabled.setValue(true);
    Model::VarCamFootage.setValue(11);
    Model::VarCamHighSpeedModeAct.setValue(true);
    EXPECT_TRUE(shown());
    Model::VarCamFootage.setValue(10);
    EXPECT_FALSE(shown());
    Model::VarCamHighSpeedModeAct.setValue(false);
    EXPECT_TRUE(shown());
    Model::VarCamBeepEnabled.setValue(false);
    EXPECT_FALSE(shown());

    Model::VarGuiRotate.setValue(true);
    EXPECT_EQ(Model::chosen->x(), 140);
    EXPECT_EQ(Model::framed->border()->color(), 0xff0000ffu);
    Model::VarGuiRotate.setValue(false);
    EXPECT_EQ(Model::chosen->x(), 10);
    const auto* weak = Model::picture->image();
    Model::VarRadioLinkQuality.setValue(4);
    EXPECT_NE(Model::picture->image(), weak);
    Model::VarBattPercent.setValue(40.0F);
    EXPECT_EQ(Model::bar->value(), 40.0F);
    EXPECT_EQ(Model::bar->maximum(), 100.0F);
}

TEST_F(ModelTest, LabelsShowValuesAndSpeakTheLanguage) {
    Model::VarLanguage.setValue(0);
    Model::VarCamIndex.setValue("A012");
    Model::VarRadioChannel.setValue(7);
    Model::VarCamSensorMode.setValue("a.b.c");
    Model::VarTimerCurrentValue.setValue(125);
    Model::VarGuiRotate.setValue(false);
    EXPECT_STREQ(Model::keyed->text(), "Torque");
    EXPECT_STREQ(Model::named->text(), "A012");
    EXPECT_STREQ(Model::formatted->text(), "07");
    EXPECT_STREQ(Model::enumerated->text(), "English");
    EXPECT_STREQ(Model::filtered->text(), "a.b");
    EXPECT_STREQ(Model::timed->text(), "02:05");
    EXPECT_STREQ(Model::filled->text(), "UB A012 [7]");
    EXPECT_STREQ(Model::switched->text(), "Torque");
    Model::VarLanguage.setValue(3);
    EXPECT_STREQ(Model::keyed->text(), "Drehmoment");
    EXPECT_STREQ(Model::enumerated->text(), "Deutsch");
    Model::VarGuiRotate.setValue(true);
    EXPECT_STREQ(Model::switched->text(), "Einheit");
    Model::VarCamSpeedList.getVariable<float>(0, 2)->setValue(23.976F);
    EXPECT_STREQ(Model::cell->text(), "23.976");
    Model::VarLanguage.setValue(0);
    Model::VarGuiRotate.setValue(false);
}

TEST_F(ModelTest, AReactionsConditionIsThatOfTheScan) {
    manager_.setActivePage(Model::behaviourPage);
    Model::VarCamFootage.setValue(0);
    post(Model::Event_ButtonSoftFunctionReleased);
    EXPECT_EQ(Model::VarCamFootage.value(), 1);
    post(Model::Event_ButtonSoftFunctionReleased);
    post(Model::Event_ButtonSoftFunctionReleased);
    EXPECT_EQ(Model::VarCamFootage.value(), 0);
}

TEST_F(ModelTest, ATouchOnAFieldActsLikeItsKeyAndTheFirstEnabledActionRuns) {
    manager_.setActivePage(Model::behaviourPage);
    Model::VarGuiRotate.setValue(false);
    Model::VarRadioChannel.setValue(0);
    manager_.handleTouch({10, 10, Engine::TouchEvent::Phase::Down, 0});
    manager_.handleTouch({10, 10, Engine::TouchEvent::Phase::Up, 0});
    manager_.processEvents(true);
    EXPECT_EQ(Model::VarRadioChannel.value(), 99) << "one down from 0, wrapped";
    Model::VarGuiRotate.setValue(true);
    post(Model::Event_EditConfirmed);
    EXPECT_EQ(Model::VarRadioChannel.value(), 99) << "five up, held at the limit";
    Model::VarGuiRotate.setValue(false);
    const bool before = Model::VarCamBeepEnabled.value();
    post(Model::Event_EditCanceled);
    EXPECT_EQ(Model::VarCamBeepEnabled.value(), !before);
    EXPECT_STREQ(Model::VarCamIndex.value(), "B");
}

TEST_F(ModelTest, TimersTickAndFinishAndFollowTheirCondition) {
    manager_.setActivePage(Model::behaviourPage);
    Model::VarButtonsLocked.setValue(false);
    Model::VarTimerMinSet.setValue(0);
    Model::VarTimerSecSet.setValue(0);
    post(Model::Event_JoystickUp);
    wait(100);
    EXPECT_EQ(Model::VarTimerMinSet.value(), 1);
    EXPECT_EQ(Model::VarTimerSecSet.value(), 0);
    wait(100);
    EXPECT_EQ(Model::VarTimerMinSet.value(), 2);
    EXPECT_EQ(Model::VarTimerSecSet.value(), 9);
    Model::VarButtonsLocked.setValue(true);
    post(Model::Event_JoystickUp);
    wait(100);
    EXPECT_EQ(Model::VarTimerMinSet.value(), 2);
    Model::VarButtonsLocked.setValue(false);
}

TEST_F(ModelTest, TriggersFireOnTheRisingEdgeAndOnAChange) {
    manager_.setActivePage(Model::behaviourPage);
    Model::VarTimerMinSet.setValue(0);
    Model::VarRadioRSSI.setValue(-50);
    manager_.processEvents(true);
    Model::VarRadioRSSI.setValue(-95);
    manager_.processEvents(true);
    Model::VarRadioRSSI.setValue(-96);
    manager_.processEvents(true);
    EXPECT_EQ(Model::VarTimerMinSet.value(), 1);
    Model::VarTimerSecSet.setValue(0);
    const int other = Model::VarRadioRegion.value() == 1 ? 2 : 1;
    Model::VarRadioRegion.setValue(other);
    manager_.processEvents(true);
    EXPECT_EQ(Model::VarTimerSecSet.value(), 1);
}

TEST_F(ModelTest, UserButtonsRunTheFunctionThatTheirIndexNames) {
    Model::VarCameraUserButtonIndex_Local.setValue(1);
    manager_.processEvents(true);
    EXPECT_TRUE(Model::VarCamVFZoomEnabled.value());
    post(Model::Event_ButtonSoftUser1Pressed);
    EXPECT_TRUE(Model::VarCamTrackingZoomEnabled.value());
    post(Model::Event_ButtonSoftUser1Released);
    EXPECT_FALSE(Model::VarCamTrackingZoomEnabled.value());
    Model::VarCameraUserButtonIndex_Local.setValue(0);
    manager_.processEvents(true);
    EXPECT_FALSE(Model::VarCamVFZoomEnabled.value());
}

TEST_F(ModelTest, AnEditCopiesInConfirmsBackAndResetsItsNumber) {
    manager_.setActivePage(Model::editingPage);
    Model::VarCamExposureTimeAct.setValue(50);
    post(Model::Event_ButtonSoftULPressed);
    EXPECT_EQ(Model::VarTempExposureTime_Local.value(), 50);
    EXPECT_EQ(Model::VarTempListVal_Local.value(), 7);
    Model::VarTempExposureTime_Local.setValue(60);
    post(Model::Event_EditConfirmed);
    EXPECT_EQ(Model::VarCamExposureTimeAct.value(), 60);
    EXPECT_EQ(Model::VarTempListVal_Local.value(), 0);
}

TEST_F(ModelTest, ATargetFollowsItsRuleAndTheHistoryLeadsBack) {
    manager_.clearHistory();
    manager_.setActivePage(Model::behaviourPage);
    manager_.navigateTo(Model::editingPage);
    Model::VarGuiRotate.setValue(false);
    post(Model::Event_ButtonSoftURPressed);
    EXPECT_EQ(manager_.activePage(), Model::rulesPage);
    EXPECT_TRUE(manager_.goBack());
    EXPECT_EQ(manager_.activePage(), Model::behaviourPage) << "the editing page is none for the history";
}

TEST_F(ModelTest, ScalesFollowTheirVariablesAndAPinchWritesOne) {
    using Phase = Engine::TouchEvent::Phase;
    manager_.setActivePage(Model::scalesPage);
    Model::VarFocusScaleMagnificationValue.setValue(4.0F);
    Model::VarFocusTargetValue.setValue(0.5F);
    manager_.drawFrame();
    EXPECT_EQ(Model::ruler->pixelOfFraction(0.5F), 167);
    EXPECT_FALSE(Model::scalesPage->isDirty());
    Model::VarFocusTargetValue.setValue(0.75F);
    EXPECT_TRUE(Model::scalesPage->isDirty());
    EXPECT_EQ(Model::ruler->pixelOfFraction(0.75F), 167);

    manager_.handleTouch({180, 100, Phase::Down, 0});
    manager_.handleTouch({180, 150, Phase::Down, 1});
    manager_.handleTouch({180, 200, Phase::Move, 1});
    EXPECT_EQ(Model::VarFocusScaleMagnificationValue.value(), 8.0F);
    EXPECT_EQ(Model::ruler->magnification(), 8.0F);
    manager_.handleTouch({180, 200, Phase::Up, 1});
    manager_.handleTouch({180, 100, Phase::Up, 0});
}

}  // namespace
