#include "CorvaneShared/Units.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "CorvaneShared/DisplayLocale.h"

namespace corvane {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;
using Environment = std::map<std::string, std::string>;

SharedSettings::EnvironmentLookup lookupIn(const Environment& environment) {
    return [&environment](const char* name) -> const char* {
        auto found = environment.find(name);
        return found == environment.end() ? nullptr : found->second.c_str();
    };
}

// A German "%@ RPM" that moves the number, and a Japanese one that lost its placeholder.
const std::map<std::string, std::string> rpmTemplates = {{"de", "U/min: %@"}, {"ja", "RPM"}};

struct UnitsFixture {
    InMemorySettingsStore settings;
    std::string language;
    Environment environment;

    UnitSources sources() const {
        auto translate = [this](std::string_view key) {
            auto found = rpmTemplates.find(language);
            return key == "%@ RPM" && found != rpmTemplates.end() ? found->second
                                                                  : std::string(key);
        };
        return {settings, [this] { return language; }, translate, lookupIn(environment)};
    }
};

// The number and unit spacing come from ICU's locale data, which may change between releases;
// the rows assert only what this code decides: the unit, the rounding, which locale's marks
// are used and where the translated template puts the number.
TEST(Units, FormatsInTheDisplayLocale) {
    struct Expected {
        const char* degrees;
        const char* temperatureNumber;
        const char* unitSymbol;
        const char* rpmNumber;
        const char* rpmTemplate;
    };
    struct Row {
        const char* name;
        std::string language;
        const char* variable;  // the one locale variable set, to `value`
        const char* value;
        const char* unitChoice;
        Expected expected;
    };
    const Expected usEnglish = {"126°", "126.3", "°F", "2,500", "%@ RPM"};
    const Expected german = {"52°", "52,4", "°C", "2.500", "U/min: %@"};
    const Expected celsiusInEnglish = {"52°", "52.4", "°C", "2,500", "%@ RPM"};
    const Expected fahrenheitGermanMarks = {"126°", "126,3", "°F", "2.500", "%@ RPM"};
    const std::vector<Row> rows = {
        {"en-US", "en", "LANG", "en_US.UTF-8", "system", usEnglish},
        {"de-DE", "de", "LANG", "de_DE.UTF-8", "system", german},
        {"ja-JP, whose template lost its placeholder", "ja", "LANG", "ja_JP.UTF-8", "system",
         celsiusInEnglish},
        {"English wording, German marks", "en", "LANG", "de_DE.UTF-8", "fahrenheit",
         fahrenheitGermanMarks},
        {"unknown choice follows the locale",
         "de",
         "LC_MEASUREMENT",
         "en_US",
         "kelvin",
         {"126°", "126,3", "°F", "2.500", "U/min: %@"}},
        {"chosen Celsius in the US", "en", "LANG", "en_US", "celsius", celsiusInEnglish},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        UnitsFixture fixture{
            InMemorySettingsStore(SettingValue{{"temperatureUnit", row.unitChoice}}),
            row.language,
            {{row.variable, row.value}}};
        const UnitSources sources = fixture.sources();
        const Expected& expected = row.expected;
        EXPECT_EQ(Units::degrees(52.4, sources), expected.degrees);
        const std::string temperature = Units::temperature(52.4, 1, sources);
        EXPECT_THAT(temperature, StartsWith(expected.temperatureNumber));
        EXPECT_THAT(temperature, EndsWith(expected.unitSymbol));
        std::string rpm = expected.rpmTemplate;
        rpm.replace(rpm.find("%@"), 2, expected.rpmNumber);
        EXPECT_EQ(Units::rpm(2500, sources), rpm);
    }
}

TEST(Units, PanelMeasurementsInTheDisplayLocale) {
    struct Row {
        const char* language;
        const char* posixLocale;
        const char* percent;
        const char* watts;
        const char* volts;
        const char* uptime;
        const char* minutes;
    };
    const std::vector<Row> rows = {
        {"en", "en_US.UTF-8", "63%", "7.3 W", "12.45 V", "3 days, 4 hr, 5 min", "7 min"},
        {"de", "de_DE.UTF-8", "63\u00a0%", "7,3 W", "12,45 V", "3 Tg., 4 Std. und 5 Min.",
         "7 Min."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.language);
        UnitsFixture fixture{InMemorySettingsStore(), row.language, {{"LANG", row.posixLocale}}};
        const UnitSources sources = fixture.sources();
        EXPECT_EQ(Units::percent(0.634, sources), row.percent);
        EXPECT_EQ(Units::watts(7.26, sources), row.watts);
        EXPECT_EQ(Units::volts(12.449, sources), row.volts);
        // Whole minutes; leading units that are zero are left out, inner ones are not.
        EXPECT_EQ(Units::duration(((3 * 24 + 4) * 60 + 5) * 60 + 59, sources), row.uptime);
        EXPECT_EQ(Units::duration(7 * 60, sources), row.minutes);
    }
    UnitsFixture english{InMemorySettingsStore(), "en", {{"LANG", "en_US.UTF-8"}}};
    EXPECT_EQ(Units::duration(-5, english.sources()), "0 min");
    EXPECT_EQ(Units::percent(std::nan(""), english.sources()), "0%");
}

TEST(Units, WholeNumbersRoundHalvesAwayFromZero) {
    struct Row {
        double value;
        const char* degrees;
        const char* percent;
    };
    const std::vector<Row> rows = {
        {-0.4, "0°", "0%"},   {0.5, "1°", "50%"},  {-0.5, "-1°", "0%"},
        {0.456, "0°", "46%"}, {0.005, "0°", "1%"}, {1.7, "2°", "100%"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(Units::degreesText(row.value), row.degrees);
        EXPECT_EQ(Units::percentText(row.value), row.percent);
    }
}

}  // namespace
}  // namespace corvane
