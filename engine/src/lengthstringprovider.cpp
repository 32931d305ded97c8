#include "embedded-gui-engine/lengthstringprovider.h"

#include <cmath>
#include <cstdio>

namespace Engine {

namespace {

constexpr const char* infinitySign = "\u221e";
constexpr float infinite = 1000;
constexpr float inchesPerMetre = 1 / 0.0254F;

template <std::size_t Size>
void printMetres(char (&text)[Size], float metres) {
    const int decimals = metres < 9.995F ? 2 : metres < 99.95F ? 1 : 0;
    std::snprintf(text, Size, "%.*f", decimals, static_cast<double>(metres));
}

template <std::size_t Size>
void printFeet(char (&text)[Size], long inches) {
    if (inches < 1200)
        std::snprintf(text, Size, "%ld'%02ld\"", inches / 12, inches % 12);
    else
        std::snprintf(text, Size, "%ld'", (inches + 6) / 12);
}

}  // namespace

void LengthStringProvider::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) {
        refuseMissingProvider();
        return;
    }
    const float metres = provider_->value();
    const float inches = metres * inchesPerMetre;
    char text[TextSize] = "";
    if (metres >= 0) {
        if ((system_ == System::Metres ? metres : inches / 12) >= infinite - 0.5F)
            std::snprintf(text, sizeof text, "%s", infinitySign);
        else if (system_ == System::Metres)
            printMetres(text, metres);
        else
            printFeet(text, std::lround(inches));
    }
    finishUnfiltered(text);
}

}  // namespace Engine
