#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

#include "embedded-gui-engine/pregeneratedfont.h"

namespace TextTest {

/// A font made in the test: `advances` by code, with code 0 always present. Ink is one pixel narrower than the
/// advance, except for the space and the line feed, which have none.
class TestFont {
  public:
    static constexpr std::uint16_t lineHeight = 10;
    static constexpr std::uint16_t inkHeight = 7;
    static constexpr std::int16_t inkTop = 2;

    explicit TestFont(std::map<std::uint16_t, std::uint16_t> advances, std::uint16_t digitWidth = 6,
                      std::int16_t baseline = 0) {
        advances.emplace(0, 8);
        for (const auto& [code, advance] : advances) {
            const bool inkless = code == 10 || code == 32;
            codes_.push_back(code);
            advances_.push_back(advance);
            widths_.push_back(inkless ? 0 : static_cast<std::uint16_t>(std::max(0, advance - 1)));
            heights_.push_back(inkless ? 0 : inkHeight);
            xs_.push_back(static_cast<std::uint32_t>(codes_.size() - 1) * 40);
            ys_.push_back(lineHeight + inkTop);
            bearings_.push_back(1);
        }
        record_ = {{0, 4000, 40, Engine::Image::Mask8, nullptr},
                   static_cast<std::uint32_t>(codes_.size()),
                   xs_.data(),
                   ys_.data(),
                   widths_.data(),
                   heights_.data(),
                   advances_.data(),
                   bearings_.data(),
                   0xFF20,
                   codes_.data(),
                   baseline,
                   digitWidth,
                   lineHeight,
                   0};
    }
    TestFont(const TestFont&) = delete;
    TestFont& operator=(const TestFont&) = delete;

    Engine::Font* font() { return &font_; }
    Engine::PreGeneratedFont& preGenerated() { return font_; }

    /// Every printable ASCII character `advance` wide, the space too; a line feed of 4.
    static std::map<std::uint16_t, std::uint16_t> monospaced(std::uint16_t advance) {
        std::map<std::uint16_t, std::uint16_t> advances{{10, 4}};
        for (std::uint16_t code = 32; code < 127; ++code) advances[code] = advance;
        return advances;
    }

  private:
    std::vector<std::uint16_t> codes_, advances_, widths_, heights_;
    std::vector<std::uint32_t> xs_;
    std::vector<std::int16_t> ys_, bearings_;
    Engine::FontRecord record_{};
    Engine::PreGeneratedFont font_{record_};
};

}  // namespace TextTest
