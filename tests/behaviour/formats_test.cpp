#include <gmock/gmock.h>

#include <limits>
#include <string>

#include "embedded-gui-engine/formatmixed.h"
#include "embedded-gui-engine/hundredthsstringprovider.h"
#include "embedded-gui-engine/lengthstringprovider.h"
#include "embedded-gui-engine/regexfilter.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/stringprovider.h"
#include "embedded-gui-engine/timestringprovider.h"
#include "embedded-gui-engine/unixtimestringprovider.h"
#include "fakes.h"

namespace Engine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// What a provider of class Provider makes of a value.
template <typename Provider, typename T>
std::string shown(const char* format, T value) {
    const Result<T> result(value);
    char storage[256] = "";
    Provider provider = [&] {
        if constexpr (std::is_same_v<Provider, TimeStringProvider>) {
            return Provider(format, &result, storage);
        } else {
            return Provider(format, &result, nullptr, storage);
        }
    }();
    provider.update();
    return provider.text();
}

template <typename T>
std::string shown(const char* format, T value) {
    return shown<StringProvider<T>, T>(format, value);
}

TEST(StringProvider, PrintsAsPrintf) {
    LogCapture log;
    EXPECT_EQ(shown("%i", -5), "-5");
    EXPECT_EQ(shown("%u", -1), "4294967295");
    EXPECT_EQ(shown("%.2i:", 7), "07:");
    EXPECT_EQ(shown("[%i/5]", 3), "[3/5]");
    EXPECT_EQ(shown("%i%%", 50), "50%");
    EXPECT_EQ(shown("%+05d|%%|", 42), "+0042|%|");
    EXPECT_EQ(shown("%-4x|", 255), "ff  |");
    EXPECT_EQ(shown("%lli", 1LL << 40), "1099511627776");
    EXPECT_EQ(shown("+%.2f", 1.005F), "+1.00");
    EXPECT_EQ(shown("%.1f\xc2\xb0", 12.25F), "12.2\xc2\xb0");
    EXPECT_EQ(shown("%g", 0.1), "0.1");
    EXPECT_EQ(shown(": %s", "abc"), ": abc");
    EXPECT_EQ(shown("%6.2s|", "abc"), "    ab|");
    EXPECT_EQ(shown("%-6s|", "abc"), "abc   |");
    EXPECT_EQ(shown("+0.25", 9.0F), "+0.25") << "a format needs no conversion";
    EXPECT_EQ(shown("%s", static_cast<const char*>(nullptr)), "");
    EXPECT_EQ(shown("%.3s", "\xff\xfe\xc3\x28"), "\xff\xfe\xc3");
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
}

TEST(StringProvider, CutsWhatIsTooLong) {
    const std::string text(10000, 'x');
    EXPECT_EQ(shown("%s", text.c_str()), text.substr(0, 255));
    EXPECT_EQ(shown(text.c_str(), 1), text.substr(0, 255));
    EXPECT_EQ(shown("%999d", 1), std::string(255, ' '));
    char storage[6] = "";
    const Result<const char*> euro(
        "ab\xe2\x82\xac"
        "c");
    StringProvider<const char*> small("%s", &euro, nullptr, storage);
    small.update();
    EXPECT_STREQ(small.text(), "ab\xe2\x82\xac");
    char smaller[5] = "";
    StringProvider<const char*> tight("%s", &euro, nullptr, smaller);
    tight.update();
    EXPECT_STREQ(tight.text(), "ab") << "a character is never cut in two";
    StringProvider<const char*> nowhere("%s", &euro, nullptr, {});
    nowhere.update();
    EXPECT_STREQ(nowhere.text(), "");
}

TEST(StringProvider, RefusesAFormatThatDoesNotFit) {
    LogCapture log;
    const std::string many(5000, '%');
    for (const char* format : {"%n", "%s", "%f", "%li", "%lli", "%i %i", "%*i", "%1$i", "%", "%5", "%.", "%q",
                               "%12345i", "%.2147483648i", "%p", "%m", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(shown(format, 42), "42") << (format != nullptr ? format : "null");
    }
    EXPECT_THAT(LogCapture::lines(), SizeIs(17));
    EXPECT_THAT(LogCapture::lines(), testing::Each(HasSubstr("is refused")));
    EXPECT_EQ(shown("%i", "text"), "text");
    EXPECT_EQ(shown("%n", "text"), "text");
    EXPECT_EQ(shown("%ls", "text"), "text");
    EXPECT_EQ(shown("%i", 1.5F), "1.5");
    EXPECT_EQ(shown("%Lf", 1.5), "1.5");
    EXPECT_EQ(shown("%i", 1LL << 40), "1099511627776");
    EXPECT_EQ(shown(many.c_str(), 1), std::string(255, '%')) << "an even number of percent signs is no conversion";
}

TEST(StringProvider, LogsABadFormatOnce) {
    LogCapture log;
    FakeScalar<int> number(1);
    char storage[32] = "";
    StringProvider<int> provider("%n", &number, nullptr, storage);
    number.observers = {&provider};
    provider.link();
    for (int value = 2; value < 5; ++value) number.setValue(value);
    EXPECT_STREQ(provider.text(), "4");
    EXPECT_THAT(LogCapture::lines(),
                ElementsAre("1 The format \"%n\" is refused: its conversion does not fit the value. The value is shown "
                            "plainly."));
    provider.setFormat("<%i>");
    EXPECT_STREQ(provider.text(), "<4>");
    provider.setFormat("%s");
    EXPECT_THAT(LogCapture::lines(), SizeIs(2));
}

TEST(StringProvider, SurvivesAFormatThatChangesInItsBuffer) {
    char format[] = "%i!";
    FakeScalar<int> number(3);
    char storage[32] = "";
    StringProvider<int> provider(format, &number, nullptr, storage);
    provider.link();
    EXPECT_STREQ(provider.text(), "3!");
    format[1] = 's';
    number.notify();
    provider.update();
    EXPECT_STREQ(provider.text(), "3");
}

TEST(StringProvider, EmptiesWithoutAProvider) {
    LogCapture log;
    char storage[16] = "";
    const Result<int> one(1);
    StringProvider<int> provider("%i", &one, nullptr, storage);
    provider.update();
    provider.setProvider(nullptr);
    provider.update();
    EXPECT_STREQ(provider.text(), "");
    EXPECT_THAT(LogCapture::lines(), ElementsAre("0 FormatModifier: No value provider."));
    provider.link();
    EXPECT_THAT(LogCapture::lines(), SizeIs(1)) << "at link time the provider may still be to come";
}

std::string filtered(const char* expression, const std::string& subject) {
    RegexFilter filter(expression);
    const Result<const char*> result(subject.c_str());
    char storage[256] = "";
    StringProvider<const char*> provider("%s", &result, &filter, storage);
    provider.link();
    filter.setExpression(nullptr);  // frees the pattern
    return provider.text();
}

TEST(RegexFilter, KeepsTheGroups) {
    EXPECT_EQ(filtered("^(.*)\\.[^.]+$", "a.b.c"), "a.b");
    EXPECT_EQ(filtered("^(.*)\\.[^.]+$", "nodot"), "") << "without a match the text vanishes";
    EXPECT_EQ(filtered("(.+?)\\:[^\\.]+$", "left:right"), "left");
    EXPECT_EQ(filtered("[^\\.]\\:(.+?)$", "left:right"), "right");
    EXPECT_EQ(filtered("(a)(x)?(b)", "ab"), "ab");
    EXPECT_EQ(filtered("ab", "ab"), "") << "no group, no text";
    EXPECT_EQ(filtered("(.)(.)(.)(.)(.)(.)(.)(.)(.)(.)", "0123456789"), "0123456789");
    EXPECT_EQ(filtered("(.)(.)(.)(.)(.)(.)(.)(.)(.)(.)(.)", "0123456789a"), "") << "more groups than are kept";
    EXPECT_EQ(filtered("(.*)", std::string(300, 'x')), std::string(255, 'x'));
    EXPECT_EQ(filtered("((.*))", std::string(200, 'x')), std::string(200, 'x')) << "a group that does not fit ends it";
    EXPECT_EQ(filtered("", "kept"), "kept");
}

TEST(RegexFilter, DoesNotFilterWithAFaultyExpression) {
    LogCapture log;
    EXPECT_EQ(filtered("(abc", "abc"), "abc");
    EXPECT_THAT(LogCapture::lines(), ElementsAre("1 RegEx error at character 4: missing )"));
}

TEST(RegexFilter, BoundsTheWorkOfAMatch) {
    LogCapture log;
    static constinit RegexFilter filter("(a+)+$");
    filter.link();
    filter.link();
    FakeString text("");
    char storage[256] = "";
    StringProvider<const char*> provider("%s", &text, &filter, storage);
    text.observers = {&provider};
    const std::string hard = std::string(250, 'a') + "b";
    text.setValue(hard.c_str());
    text.setValue(hard.c_str());
    EXPECT_STREQ(provider.text(), "");
    ASSERT_THAT(LogCapture::lines(), SizeIs(1));
    EXPECT_THAT(LogCapture::lines()[0], HasSubstr("takes too long"));
    const std::string deep(255, 'x');
    EXPECT_EQ(filtered("((x|y)*)", deep).size(), 255U) << "a long plain text stays within the limits";
}

TEST(TimeStringProvider, SplitsADuration) {
    const auto time = [](const char* format, int seconds) { return shown<TimeStringProvider>(format, seconds); };
    LogCapture log;
    EXPECT_EQ(time("%02h:%02m:%02s", 3725), "01:02:05");
    EXPECT_EQ(time("Media %02D:%02h:%02m:%02s", 90061), "Media 01:01:01:01");
    EXPECT_EQ(time("%H|%M|%S|%d", 90061), "25|1501|90061|1");
    EXPECT_EQ(time("%s%s%s%s%s%s%s end", 7), "777777") << "parsing ends behind the sixth token";
    EXPECT_EQ(time("100%% %s", 7), "100% 7");
    EXPECT_EQ(time("%s", -1), "4294967295");
    const std::string prefix(61, 'x');
    EXPECT_EQ(time((prefix + "%02s").c_str(), 7), prefix) << "half a token is not kept";
    EXPECT_EQ(time((prefix + "%s").c_str(), 7), prefix + "7");
    EXPECT_EQ(time(std::string(10000, 'x').c_str(), 7), std::string(63, 'x'));
    EXPECT_EQ(time(nullptr, 7), "");
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
    for (const char* format : {"%n", "%02x%s", "%", "%ls", "%12345s", "%5", "%*s"})
        EXPECT_EQ(time(format, 42), "42") << format;
    EXPECT_THAT(LogCapture::lines(), SizeIs(7));
}

TEST(LengthStringProvider, ShowsThreeFiguresOrFeetAndInches) {
    using System = LengthStringProvider::System;
    const auto length = [](System system, float metres) {
        const Result<float> value(metres);
        char storage[32] = "";
        LengthStringProvider provider(system, &value, storage);
        provider.update();
        return std::string(provider.text());
    };
    const float nothing = std::numeric_limits<float>::quiet_NaN(), infinite = std::numeric_limits<float>::infinity();
    const std::pair<float, const char*> metres[] = {
        {0, "0.00"},     {1.834F, "1.83"},   {9.994F, "9.99"},     {9.996F, "10.0"}, {99.94F, "99.9"}, {99.96F, "100"},
        {999.4F, "999"}, {999.6F, "\u221e"}, {infinite, "\u221e"}, {-1, ""},         {nothing, ""}};
    for (const auto& [value, text] : metres) EXPECT_EQ(length(System::Metres, value), text) << value;
    const std::pair<float, const char*> feet[] = {
        {0, "0'00\""},   {1.8288F, "6'00\""}, {1.8161F, "6'00\""},  {1.7F, "5'07\""}, {30.47F, "100'"},
        {38.1F, "125'"}, {304.8F, "\u221e"},  {infinite, "\u221e"}, {-1, ""},         {nothing, ""}};
    for (const auto& [value, text] : feet) EXPECT_EQ(length(System::Feet, value), text) << value;
}

TEST(HundredthsStringProvider, RoundsToOneDecimal) {
    for (const auto& [value, text] : {std::pair(488, "4.9"), {1100, "11.0"}, {0, "0.0"}, {-5, "-0.1"}}) {
        const Result<int> hundredths(value);
        char storage[16] = "";
        HundredthsStringProvider provider(&hundredths, storage);
        provider.update();
        EXPECT_STREQ(provider.text(), text);
    }
}

TEST(TimeStringProvider, TakesANewFormat) {
    LogCapture log;
    const Result<int> value(3725);
    char storage[64] = "";
    TimeStringProvider provider("%s %n", &value, storage);
    provider.update();
    provider.update();
    EXPECT_STREQ(provider.text(), "3725");
    EXPECT_THAT(LogCapture::lines(), SizeIs(1));
    provider.setFormat("%m");
    EXPECT_STREQ(provider.text(), "2");
    TimeStringProvider nothing("%s", nullptr, storage);
    nothing.update();
    EXPECT_EQ(LogCapture::lines().back(), "0 TimeFormatModifier: No value provider.");
}

TEST(UnixTimeStringProvider, ShowsLocalTime) {
    setenv("TZ", "UTC", 1);
    LogCapture log;
    const auto time = [](const char* format, long long seconds) {
        return shown<UnixTimeStringProvider>(format, seconds);
    };
    EXPECT_EQ(time("%Y-%m-%d %H:%M:%S", 86399), "1970-01-01 23:59:59");
    EXPECT_EQ(time("%d.%m.%y", -1), "31.12.69");
    EXPECT_EQ(time(std::string(200, ' ').append("%c%c%c").c_str(), 0), "") << "an overlong result is none";
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
    EXPECT_EQ(time("%Y", INT64_MAX), "9223372036854775807");
    EXPECT_EQ(time(std::string(10000, 'x').c_str(), 5), "5");
    EXPECT_EQ(time(nullptr, 5), "5");
    EXPECT_THAT(LogCapture::lines(), SizeIs(3));
}

std::string mixed(const char* format, std::initializer_list<std::uint32_t> words, std::size_t size = 256) {
    std::vector<char> buffer(size + 1, '#');
    const std::vector<std::uint32_t> arguments(words);
    formatMixed(buffer.data(), size, format, arguments);
    EXPECT_EQ(buffer[size], '#');
    return buffer.data();
}

TEST(FormatMixed, TakesEachWordAsItsConversionSays) {
    EXPECT_EQ(mixed("%d %u %x", {0xffffffff, 0xffffffff, 0xbeef}), "-1 4294967295 beef");
    EXPECT_EQ(mixed("%.2f|%c", {0x3fc00000, 'A'}), "1.50|A");
    EXPECT_EQ(mixed("%s", {0x00444342}), "BCD");
    EXPECT_EQ(mixed("%s", {0x44434241}), "ABCD") << "the word needs no terminator";
    EXPECT_EQ(mixed("100%% %i", {5}), "100% 5");
    EXPECT_EQ(mixed("%p %p", {0, 0x2a}), "(nil) 0x2a");
    EXPECT_EQ(mixed("plain", {}), "plain");
}

TEST(FormatMixed, SurvivesHostileFormats) {
    LogCapture log;
    EXPECT_EQ(mixed("%n%i", {7, 8}), "8") << "n takes its word and prints nothing";
    EXPECT_EQ(mixed("%i %i %s", {1}), "1 0 ") << "words that are missing count as 0";
    EXPECT_EQ(mixed("%lld %hs %*d", {1, 0x41, 3}), "1 A 3") << "sizes and stars are passed over";
    EXPECT_EQ(mixed("50%", {1}), "50%");
    EXPECT_EQ(mixed("%i %", {1}), "1 %");
    EXPECT_EQ(mixed("%123456789012345d", {1}).size(), 255U);
    EXPECT_EQ(mixed("abc%i", {1234}, 6), "abc12");
    EXPECT_EQ(mixed("abc", {}, 1), "");
    EXPECT_EQ(mixed(nullptr, {}), "");
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
    EXPECT_EQ(mixed(std::string(10000, 'x').c_str(), {}), std::string(255, 'x'));
    EXPECT_THAT(LogCapture::lines(), ElementsAre("1 size of tmpFmt too small!"));
}

}  // namespace
}  // namespace Engine
