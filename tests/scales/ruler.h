#pragma once

#include <array>

#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/markerindicator.h"
#include "embedded-gui-engine/objectindicator.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/rangeindicator.h"
#include "embedded-gui-engine/scale.h"
#include "embedded-gui-engine/scalecontainer.h"
#include "table.h"
#include "tests/engine/world.h"

namespace ScaleTest {

using Picture = std::vector<std::string>;

inline constexpr Engine::Color red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, grey = 0xFF808080,
                               yellow = 0xFFFFFF00, white = 0xFFFFFFFF;

/// A scale 12 pixels wide on a page with one free pixel around it. Templates are filled boxes: 'M' major, 'm' medium,
/// '-' minor tick, 'L' main label, 'x' whatever is disabled, '*' marker, 'A' and 'B' its stand-ins, '=' band, 'o'
/// object.
class Ruler {
  public:
    explicit Ruler(int height, Engine::ScaleContainer::Params given = {})
        : screen(14, static_cast<std::uint32_t>(height) + 2),
          container(
              {.x = 1, .y = 1, .width = 12, .height = static_cast<std::int16_t>(height), .background = 0xFF000000},
              completed(given), templates_) {
        Engine::GuiManager::instance().setPainter(&screen.painter);
        page.setChildren(tops_.data(), 1);
        container.linkChildren();
    }
    ~Ruler() { Engine::GuiManager::instance().setPainter(nullptr); }

    Picture picture() {
        page.draw(screen.painter);
        return screen.picture([](unsigned color) {
            switch (color) {
                case white: return 'M';
                case green: return 'm';
                case blue: return '-';
                case yellow: return 'L';
                case grey: return 'x';
                case red: return '*';
                case 0xFF00FFFF: return 'A';
                case 0xFFFF00FF: return 'B';
                case 0xFF00FF7F: return '=';
                case 0xFF7F00FF: return 'o';
                default: return color == 0xFF123456 ? ' ' : '.';
            }
        });
    }

    Engine::Test::Screen screen;
    Table table;
    Engine::Test::Box major{{.width = 4, .height = 1, .background = white, .disabledBackground = grey}};
    Engine::Test::Box medium{{.width = 3, .height = 1, .background = green, .disabledBackground = grey}};
    Engine::Test::Box minor{{.width = 2, .height = 1, .background = blue, .disabledBackground = grey}};
    Engine::Label label{
        {.x = 5, .width = 3, .height = 2, .background = yellow, .disabledForeground = 0, .disabledBackground = grey}};
    Engine::Test::Box dot{{.x = 8, .y = -1, .width = 2, .height = 3, .background = red}};
    Engine::Test::Box above{{.x = 8, .width = 2, .height = 2, .background = 0xFF00FFFF}};
    Engine::Test::Box below{{.x = 8, .y = -2, .width = 2, .height = 2, .background = 0xFFFF00FF}};
    Engine::Test::Box band{{.x = 10, .width = 1, .height = 1, .background = 0xFF00FF7F}};
    Engine::Test::Box object{{.x = 5, .width = 1, .height = 1, .background = 0xFF7F00FF}};
    std::array<Engine::ScaleContainerElement*, 3> elements{};

  private:
    std::array<Engine::Object*, 9> templates_{&major, &medium, &minor, &label, &dot, &above, &below, &band, &object};
    std::array<Engine::Object*, 1> tops_{&container};

  public:
    Engine::ScaleContainer container;
    Engine::Scale scale{&container,
                        {.majorTick = &major, .mediumTick = &medium, .minorTick = &minor, .mainLabel = &label}};
    Engine::Scale plain{&container, {.majorTick = &major, .minorTick = &minor}};
    Engine::MarkerIndicator marker{&container, {.marker = &dot, .above = &above, .below = &below}};
    Engine::RangeIndicator range{&container, &band};
    Engine::Page page{{.backgroundColor = 0xFF123456}};

  private:
    Engine::ScaleContainer::Params completed(Engine::ScaleContainer::Params params) {
        if (params.table == nullptr) params.table = &table;
        params.elements = elements;
        return params;
    }
};

}  // namespace ScaleTest
