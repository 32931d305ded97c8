#include "embedded-gui-engine/label.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/textpool.h"
#include "recordingpainter.h"
#include "testfont.h"

namespace {

using Engine::CaseMode;
using Engine::Label;
using Engine::TextId;
using Engine::WidgetParams;
using TextTest::RecordingPainter;
using TextTest::TestFont;

const char* language = "english ";

const char* textOf(TextId id) {
    static std::array<std::string, 4> texts;
    texts[id.key] = id.key == 0 ? "" : language + std::to_string(id.key);
    return texts[id.key].c_str();
}

struct CountingLabel : Label {
    using Label::Label;
    void invalidateAll(bool) override { ++marks; }
    int marks = 0;
};

struct Parent final : Engine::Widget {
    Parent() : Widget(WidgetParams{.x = 5, .y = 7, .width = 50, .height = 50}) {}
    void draw(Engine::Painter&, Engine::Rect) override {}
    void childGeometryChanged() override { ++changes; }
    int changes = 0;
};

class LabelTest : public testing::Test {
  protected:
    LabelTest() {
        language = "english ";
        Engine::hooks().textForId = &textOf;
        Engine::GuiManager::instance().setPainter(&painter);
    }
    ~LabelTest() override {
        Engine::hooks() = {};
        Engine::GuiManager::instance().setPainter(nullptr);
    }

    WidgetParams params(std::int16_t width = 50, std::int16_t height = 30) {
        WidgetParams result{.width = width, .height = height};
        result.font = font.font();
        return result;
    }

    TestFont font{TestFont::monospaced(5)};
    RecordingPainter painter;
};

TEST_F(LabelTest, IsConstantData) {
    static constinit Label label(WidgetParams{}, TextId{1}, "literal");
    EXPECT_STREQ(label.text(), "literal");
}

TEST_F(LabelTest, SettersCompareTheTextTheyWouldShow) {
    CountingLabel label(params());
    label.setText("one");
    EXPECT_EQ(label.marks, 1);
    label.setText(std::string("one").c_str());
    EXPECT_EQ(label.marks, 1);
    label.setText(label.text() + 1);
    EXPECT_STREQ(label.text(), "ne");
    label.setText(nullptr);
    EXPECT_STREQ(label.text(), "");
    EXPECT_EQ(label.marks, 3);
}

TEST_F(LabelTest, KeysFollowTheLanguageAndDirectTextsStay) {
    CountingLabel keyed(params(), TextId{2});
    EXPECT_STREQ(keyed.text(), "");
    keyed.update();
    EXPECT_STREQ(keyed.text(), "english 2");
    language = "deutsch ";
    keyed.update();
    EXPECT_STREQ(keyed.text(), "deutsch 2");
    keyed.setText("7");
    keyed.update();
    EXPECT_STREQ(keyed.text(), "deutsch 2") << "the key is kept";

    CountingLabel direct(params());
    direct.setText("7");
    direct.update();
    EXPECT_STREQ(direct.text(), "7");
    direct.setTextId(TextId{0});
    EXPECT_STREQ(direct.text(), "");
}

TEST_F(LabelTest, LettersTakeTheCase) {
    const auto shown = [&](CaseMode mode, const char* text) {
        Label label(params(), {}, nullptr, Engine::Ellipsis::None, mode);
        label.setText(text);
        return std::string(label.text());
    };
    EXPECT_EQ(shown(CaseMode::Upper, "lens \xC3\xA4 Data"), "LENS \xC3\xA4 DATA");
    EXPECT_EQ(shown(CaseMode::Lower, "LENS Data"), "lens data");
    EXPECT_EQ(shown(CaseMode::Words, "lens  data oF 2nd"), "Lens  Data OF 2nd");

    Parent parent;
    Label literal(params(), {}, "lens data", Engine::Ellipsis::None, CaseMode::Words);
    literal.setParent(&parent);
    EXPECT_STREQ(literal.text(), "Lens Data");
}

TEST_F(LabelTest, GrowingTextsKeepTheirRoom) {
    Label label(params());
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += static_cast<char>('a' + i % 26);
        label.setText(text.c_str());
        ASSERT_EQ(label.text(), text);
    }
    const char* const place = label.text();
    label.setText("short");
    EXPECT_EQ(label.text(), place);
    char* const reused = Engine::TextPool::take(2000);
    EXPECT_NE(reused, place);
    Engine::TextPool::giveBack(reused, 2000);
    EXPECT_EQ(Engine::TextPool::take(1500), reused) << "blocks serve texts of their size again";
}

TEST_F(LabelTest, TextsOutliveAUsedUpPool) {
    static std::vector<char*> blocks;
    for (std::uint32_t taken = 0; taken <= Engine::TextPool::capacity; taken += 4096)
        blocks.push_back(Engine::TextPool::take(4096));
    Label label(params());
    label.setText("still there");
    EXPECT_STREQ(label.text(), "still there");
    for (char* block : blocks) Engine::TextPool::giveBack(block, 4096);
}

TEST_F(LabelTest, AutomaticHeightFollowsTheLines) {
    Parent parent;
    Label label(params(), {}, nullptr, Engine::Ellipsis::None, CaseMode::AsWritten, Label::AutoHeight::On);
    label.setParent(&parent);
    const int before = parent.changes;
    label.setText("a\nb\nc");
    EXPECT_EQ(label.height(), 30 + 2 * TestFont::lineHeight);
    EXPECT_GT(parent.changes, before);
    label.setHeight(20);
    EXPECT_EQ(label.height(), 20 + 2 * TestFont::lineHeight);
    label.setText("");
    EXPECT_EQ(label.height(), 20);
    label.setText("a\nb");
    label.setAutoHeight(false);
    EXPECT_EQ(label.height(), 20);

    Engine::GuiManager::instance().setPainter(nullptr);
    label.setAutoHeight(true);
    EXPECT_EQ(label.height(), 20) << "nothing to measure with";
    Engine::GuiManager::instance().setPainter(&painter);
    label.setText("a\nb");
    EXPECT_EQ(label.height(), 30) << "made good with the next text, an equal one too";
}

TEST_F(LabelTest, HaloIsDrawnUnderTheText) {
    WidgetParams haloed = params();
    haloed.haloRadius = 1;
    haloed.haloColor = 0xFF123456;
    Label label(haloed, {}, "a");
    label.applyStyle(painter);
    label.draw(painter, {0, 0, 50, 30});
    ASSERT_EQ(painter.calls.size(), 3u);
    EXPECT_EQ(painter.calls[0].kind, 'f');
    EXPECT_EQ(painter.calls[1].kind, 'h');
    EXPECT_EQ(painter.calls[1].color, 0xFF123456u);
    EXPECT_EQ(painter.calls[2].kind, 'g');
    EXPECT_EQ(painter.haloRadius(), 0);
}

TEST_F(LabelTest, KnowsWhereItsTextEnded) {
    Parent parent;
    Label label(params(), {}, "abc");
    label.setParent(&parent);
    label.applyStyle(painter);
    label.draw(painter, {15, 17, 50, 30});
    EXPECT_EQ(label.textEndPosition(), (Engine::Point{15 + 15 - 5, -7}));
}

}  // namespace
