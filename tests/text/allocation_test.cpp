// What the text engine allocates, counted over the whole program.
#include <gtest/gtest.h>

#include <string>

#include "embedded-gui-engine/label.h"
#include "model/assets.h"
#include "screen.h"
#include "tests/support/allocations.h"

namespace {

using Engine::Rect;

template <typename Work>
std::size_t allocationsOf(Work work) {
    const std::size_t before = allocations;
    work();
    return allocations - before;
}

TEST(Allocation, TextIsDrawnAndMeasuredWithoutAny) {
    TextTest::Screen screen(60, 60);
    screen.painter().setFont(&Assets::fonts[8]);
    screen.painter().setWrap(true);
    std::string text;
    for (int i = 0; i < 50; ++i) text += "some words and more\n";
    const Rect rect{0, 0, 60, 60};
    EXPECT_EQ(allocationsOf([&] { screen.painter().drawText(text.c_str(), rect, 0, 0, -1); }), 0u);
    int height = 0;
    EXPECT_EQ(allocationsOf([&] { screen.painter().measureText(text.c_str(), rect, nullptr, &height, -1); }), 0u);
    EXPECT_GT(height, 50 * 16);
}

TEST(Allocation, LabelsTakeTextsWithoutAny) {
    static Engine::Label label{Engine::WidgetParams{}};
    const std::string text(300, 'x');
    const auto change = [&] {
        label.setText("short");
        label.setText(text.c_str());
    };
    EXPECT_EQ(allocationsOf(change), 0u);
    EXPECT_EQ(label.text(), text);
}

}  // namespace
