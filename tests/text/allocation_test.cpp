// Counts allocations of the whole program, which is why the operators are replaced here.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "embedded-gui-engine/label.h"
#include "model/assets.h"
#include "screen.h"

namespace {

std::size_t allocations = 0;

}  // namespace

// Not inlined: a compiler that sees one of the pair alone takes malloc and free for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* block = std::malloc(size != 0 ? size : 1)) return block;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

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
