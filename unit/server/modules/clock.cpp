#include "unit/server/modules/clock.h"

#include <time.h>

#include <array>
#include <chrono>
#include <string_view>

#include "model/catalogue/enums.h"

namespace Unit {

namespace {

using namespace std::chrono;

/// Where the clock of a lockstep run begins: 15 January 2026, 10:30.
constexpr std::int64_t fixedStart = 1'768'473'000;

struct Continent {
    const char* name;
    std::vector<const char*> places;
};

const std::array<Continent, 4>& continents() {
    static const std::array<Continent, 4> all = {{
        {"Europe", {"Berlin", "London", "Madrid", "Oslo", "Paris", "Rome", "Vienna", "Zurich"}},
        {"America", {"Chicago", "Los Angeles", "Mexico City", "New York", "Sao Paulo", "Toronto", "Vancouver"}},
        {"Asia", {"Dubai", "Hong Kong", "Kolkata", "Seoul", "Shanghai", "Taipei", "Tokyo"}},
        {"Pacific", {"Auckland", "Melbourne", "Sydney"}},
    }};
    return all;
}

std::int64_t machineTime() {
    const std::time_t now = std::time(nullptr);
    tm local = {};
    localtime_r(&now, &local);
    return std::int64_t{now} + local.tm_gmtoff;
}

}  // namespace

Clock::Clock(Store& values, bool wallClock)
    : Module("clock", values),
      year_(values, "VarDateYear"),
      month_(values, "VarDateMonth"),
      day_(values, "VarDateDay"),
      hour_(values, "VarDateHour"),
      hour12_(values, "VarDateHour12"),
      minute_(values, "VarDateMinute"),
      amPm_(values, "VarClockAmPm"),
      continents_(values, "VarDateTimezoneContinentListSize"),
      countries_(values, "VarDateTimezoneCountryListSize"),
      update_(values, "VarDateUpdate"),
      daylight_(values, "VarDateDaylightSaving"),
      zone_(values, "VarDateTimezone"),
      continent_(values, "VarDateTimezoneContinent"),
      country_(values, "VarDateTimezoneCountry"),
      continentNames_(values, "VarDateTimezoneContinentList", "Name"),
      countryNames_(values, "VarDateTimezoneCountryList", "Name"),
      wallClock_(wallClock) {
    settingNumber(
        "seconds", 0, 4'000'000'000.0,
        [this](double since1970) {
            seconds_ = static_cast<std::int64_t>(since1970);
            show();
        },
        [this] { return seconds_; });
    for (const Number* part : {&year_, &month_, &day_, &hour_, &minute_}) hear(*part, [this] { adopt(); });
    hear(hour12_, [this] { adopt12(); });
    hear(amPm_, [this] { adopt12(); });
    hear(continent_, [this] { chooseContinent(); });
    hear(country_, [this] { chooseCountry(); });
}

void Clock::factory() {
    continent_.set("Europe");
    country_.set("Berlin");
    daylight_.set(true);
}

void Clock::powerUp() {
    if (continent_.get().empty()) factory();
    seconds_ = wallClock_ ? machineTime() : fixedStart;
    rest_ = 0;
    for (std::size_t i = 0; i < continents().size(); ++i) continentNames_.setText(i, continents()[i].name);
    continents_.set(static_cast<std::int32_t>(continents().size()));
    listZones();
    show();
}

void Clock::tick(std::int64_t nanoseconds) {
    rest_ += nanoseconds;
    const std::int64_t whole = rest_ / 1'000'000'000;
    rest_ %= 1'000'000'000;
    seconds_ += whole;
    if (update_ && whole > 0) show();
}

void Clock::show() {
    const sys_days days = floor<std::chrono::days>(sys_seconds(seconds{seconds_}));
    const year_month_day date(days);
    const auto minutes = static_cast<std::int32_t>((seconds_ - sys_seconds(days).time_since_epoch().count()) / 60);
    const std::int32_t hour = minutes / 60;
    year_.set(static_cast<int>(date.year()));
    month_.set(static_cast<std::int32_t>(static_cast<unsigned>(date.month())));
    day_.set(static_cast<std::int32_t>(static_cast<unsigned>(date.day())));
    hour_.set(hour);
    hour12_.set(hour % 12 == 0 ? 12 : hour % 12);
    minute_.set(minutes % 60);
    amPm_.set(hour < 12 ? Model::ClockAmPm::Am : Model::ClockAmPm::Pm);
}

void Clock::adopt() {
    const year_month_day wanted(std::chrono::year(year_.get()), std::chrono::month(static_cast<unsigned>(month_.get())),
                                std::chrono::day(static_cast<unsigned>(day_.get())));
    // The 31st of a short month becomes its last day.
    const sys_days days = wanted.ok() ? sys_days(wanted) : sys_days(wanted.year() / wanted.month() / last);
    const std::int64_t second = seconds_ % 60;
    seconds_ =
        sys_seconds(days).time_since_epoch().count() + hour_.within(0, 23) * 3600 + minute_.within(0, 59) * 60 + second;
    show();
}

void Clock::adopt12() {
    hour_.set(hour12_.within(1, 12) % 12 + (amPm_.is(Model::ClockAmPm::Pm) ? 12 : 0));
    adopt();
}

void Clock::chooseContinent() {
    listZones();
    country_.set(countryNames_.text(0));
    chooseCountry();
}

void Clock::chooseCountry() {
    zone_.set(continent_.get() + "/" + country_.get());
}

void Clock::listZones() {
    const std::string chosen = continent_.get();
    std::size_t row = 0;
    for (const Continent& continent : continents()) {
        if (chosen != continent.name) continue;
        for (const char* place : continent.places) countryNames_.setText(row++, place);
    }
    countries_.set(static_cast<std::int32_t>(row));
    chooseCountry();
}

}  // namespace Unit
