#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "backend/backendhandler.h"
#include "model/catalogue/constants.h"
#include "model/catalogue/handler.h"
#include "model/catalogue/messages.h"
#include "model/catalogue/places.h"
#include "model/catalogue/variables.h"
#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The handler between the product's variables and a server of the test's own. The variables live as long as the
/// process, so each test sets what it looks at.
class Handler : public testing::Test {
  public:
    Handler() : handler(&poll, Model::handlerTable), subscriptions(server.received()) {}
    ~Handler() override { Model::syncFrame(); }

    template <typename T>
    void place(const Places::Place& where, T value) {
        std::memcpy(server.area(static_cast<std::size_t>(where.area)) + where.offset, &value, sizeof value);
    }
    template <typename T>
    T placed(const Places::Place& where) {
        T value;
        std::memcpy(&value, server.area(static_cast<std::size_t>(where.area)) + where.offset, sizeof value);
        return value;
    }
    void announce(std::uint32_t id) {
        server.notify(id);
        while (poll.wait(0) == EventPoll::Handled) {
        }
    }
    void start() {
        handler.initialiseVariables();
        Model::syncFrame();
    }
    void fillAreas(const std::function<unsigned char()>& byte) {
        for (std::size_t area = 0; area < Catalogue::areas.size(); ++area)
            std::generate_n(server.area(area), Catalogue::areas[area].size, byte);
    }
    /// The messages of which the product has told since the last call.
    std::vector<std::uint32_t> toldIds() {
        std::vector<std::uint32_t> ids;
        for (const Notify& notice : server.received()) ids.push_back(notice.id);
        return ids;
    }
    void expectSanity();

    Platform::Virtual::TemporaryInstance instance;
    StubServer server;
    EventPoll poll;
    BackendHandler handler;
    std::vector<Notify> subscriptions;
};

/// Whatever the areas hold: texts end inside their storage, live counts inside their tables, reads are harmless.
void Handler::expectSanity() {
    for (const Backend::StringVar& text : Model::strings)
        ASSERT_LT(strnlen(text.value(), static_cast<std::size_t>(text.size())), static_cast<std::size_t>(text.size()));
    for (const Backend::ArrayVar& table : Model::tables) {
        ASSERT_LE(table.rowDimension(), table.rowSize());
        for (unsigned row = 0; row <= table.rowSize(); ++row) ASSERT_EQ(table.properties(row) & ~7, 0);
    }
    for (Backend::EnumVar& choice : Model::enums) {
        choice.textKey(choice.value());
        choice.properties(choice.value());
    }
    for (Backend::EnumVar& choice : Model::enums) choice.increment(1, true);
    for (Backend::IntVar& number : Model::ints) number.increment(1, true);
    for (Backend::FloatVar& fraction : Model::floats) fraction.increment(0.5f, true);
    for (Backend::BoolVar& flag : Model::flags) flag.toggle();
    Model::syncFrame();
}

}  // namespace

TEST_F(Handler, SubscribesIdByIdAndReplaysTheAreas) {
    ASSERT_EQ(subscriptions.size(), 2u * 1291u);
    EXPECT_EQ(subscriptions[0].id, 1u);
    EXPECT_EQ(subscriptions[1].id, 7u);
    EXPECT_EQ(subscriptions.back().id, 776u);

    place(Places::VarZoomTargetValue, 0.25f);
    place(Places::VarFocusMotor_State, 3);
    place(Places::VarProductName, std::array<char, 6>{"Tern1"});
    handler.initialiseVariables();
    EXPECT_EQ(Model::VarZoomTargetValue.value(), 0.25f);
    EXPECT_EQ(Model::VarFocusMotor_State.value(), 3);
    EXPECT_STREQ(Model::VarProductName.value(), "Tern1");
    EXPECT_THAT(server.received(), IsEmpty());
}

TEST_F(Handler, AServersChangeWaitsForTheFramesPass) {
    start();
    place(Places::VarIrisTargetValue, 0.75f);
    announce(Messages::VarIrisTargetValueChanged);
    EXPECT_EQ(Model::VarIrisTargetValue.value(), 0.75f);
    EXPECT_FALSE(Model::VarIrisTargetValue.isSync());
    Model::syncFrame();
    EXPECT_TRUE(Model::VarIrisTargetValue.isSync());
    place(Places::VarIrisTargetValue, 7.5f);  // outside the limits: the server knows
    announce(Messages::VarIrisTargetValueChanged);
    EXPECT_EQ(Model::VarIrisTargetValue.value(), 7.5f);
    EXPECT_THAT(server.received(), IsEmpty());
}

TEST_F(Handler, AnEditGoesOutOnceAndItsEchoStaysQuiet) {
    start();
    Model::VarDisplayBrightness.receive(3);
    EXPECT_TRUE(Model::VarDisplayBrightness.setValue(8));
    EXPECT_THAT(toldIds(), ElementsAre(Messages::VarDisplayBrightnessChanged));
    EXPECT_EQ(placed<int>(Places::VarDisplayBrightness), 8);
    announce(Messages::VarDisplayBrightnessChanged);
    EXPECT_TRUE(Model::VarDisplayBrightness.isSync());
    EXPECT_FALSE(Model::VarDisplayBrightness.setValue(11));
    place(Places::VarDisplayBrightness, 9);
    EXPECT_TRUE(Model::VarDisplayBrightness.setValue(9));  // the place holds it already
    EXPECT_THAT(server.received(), IsEmpty());
}

TEST_F(Handler, EveryKindGoesOutByItsBytes) {
    start();
    place<unsigned char>(Places::VarAutoSkipCal, 0xff);
    announce(Messages::VarAutoSkipCalChanged);
    EXPECT_TRUE(Model::VarAutoSkipCal.value());
    Model::VarAutoSkipCal.toggle();
    Model::VarLanguage.receive(0);
    Model::VarLanguage.setValue(3);
    Model::VarUserButton4_Name.receive("", 1);
    Model::VarUserButton4_Name.setValue("Zap");
    Model::VarFocusMotor_State.receive(3);
    place(Places::VarFocusMotor_State, 3);
    Model::VarFocusMotor_State.setValue(0);
    EXPECT_THAT(toldIds(), ElementsAre(Messages::VarAutoSkipCalChanged, Messages::VarLanguageChanged,
                                       Messages::VarUserButton4_NameChanged, Messages::VarFocusMotorChanged));
    EXPECT_EQ(placed<unsigned char>(Places::VarAutoSkipCal), 0);
    EXPECT_STREQ((placed<std::array<char, 7>>(Places::VarUserButton4_Name).data()), "Zap");

    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const Places::Place& where = Places::VarCircleofConfusion;
    place(where, 0.0f);
    Model::VarCircleofConfusion.receive(0.0f);
    Model::VarCircleofConfusion.setValue(-0.0f);
    EXPECT_THAT(toldIds(), ElementsAre(Messages::VarCircleofConfusionChanged));
    EXPECT_FALSE(Model::VarCircleofConfusion.setValue(nan));
    EXPECT_TRUE(std::signbit(placed<float>(where)));
}

TEST_F(Handler, GroupsTablesAndBitsComeWithOneMessage) {
    start();
    place(Places::VarIrisMotor_ActPosition, 4711);
    place<unsigned char>(Places::VarIrisMotor_CalActive, 1);
    announce(Messages::VarIrisMotorChanged);
    EXPECT_EQ(Model::VarIrisMotor_ActPosition.value(), 4711);
    EXPECT_TRUE(Model::VarIrisMotor_CalActive.value());

    place(Places::VarCamSpeedListSize, 300);
    Places::Place speed = Places::VarCamSpeedList;
    speed.offset += 119 * 4;
    place(speed, 23.976f);
    announce(Messages::VarCamSpeedListChanged);
    EXPECT_EQ(Model::VarCamSpeedList.rowDimension(), 120u);
    EXPECT_EQ(Model::VarCamSpeedList.getVariable<float>(0, 119)->value(), 23.976f);
    EXPECT_FALSE(Model::VarCamSpeedList.isSync());

    place<std::uint16_t>(Places::VarKnobAssignmentFlags, 0b1111);
    announce(Messages::VarKnobAssignmentFlagsChanged);
    EXPECT_EQ(Model::VarKnobAssignmentTemp.properties(3) & 1, 1);
    EXPECT_EQ(Model::VarKnobAssignmentTemp.properties(4) & 1, 0);
}

TEST_F(Handler, IdsWithoutARowChangeNothing) {
    start();
    int heard = 0;
    handler.preHook = [&](const Notify&) { ++heard; };
    handler.postHook = [&](const Notify&) { ++heard; };
    for (const std::uint32_t id : {0u, 1u, 6u, 96u, 404u, 1057u, 1329u, 0xffffffffu})
        EXPECT_FALSE(handler.handleEvent({id}));
    EXPECT_EQ(heard, 16);
    EXPECT_TRUE(handler.handleEvent({Messages::VarZoomTargetValueChanged}));
    EXPECT_EQ(heard, 18);
    EXPECT_THAT(server.received(), IsEmpty());
}

TEST_F(Handler, StaysSaneWhateverTheAreasHold) {
    std::mt19937 random(3);
    start();
    for (const std::function<unsigned char()>& byte :
         {std::function<unsigned char()>([] { return static_cast<unsigned char>(0xff); }),
          std::function<unsigned char()>([] { return static_cast<unsigned char>(0); }),
          std::function<unsigned char()>([&] { return static_cast<unsigned char>(random()); })}) {
        fillAreas(byte);
        handler.initialiseVariables();
        Model::syncAll(true);
        expectSanity();
    }
}
