#include "CorvaneShared/Units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>

#include <unicode/locid.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/numberformatter.h>

#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/DisplayLocale.h"
#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<TemperatureChoice>, 3> choiceNames{{
    {TemperatureChoice::system, "system", "System"},
    {TemperatureChoice::celsius, "celsius", "Celsius"},
    {TemperatureChoice::fahrenheit, "fahrenheit", "Fahrenheit"},
}};

constexpr std::string_view rpmTemplate = "%@ RPM";
constexpr std::string_view placeholder = "%@";

double inUnit(double celsius, TemperatureUnit unit) {
    return unit == TemperatureUnit::fahrenheit ? celsius * 9 / 5 + 32 : celsius;
}

std::string wholeNumberText(double value) {
    double rounded = std::round(value);
    // round(-0.4) is -0, which would print as "-0".
    if (rounded == 0) {
        rounded = 0;
    }
    char buffer[32];
    auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, rounded, std::chars_format::fixed, 0);
    return error == std::errc{} ? std::string(buffer, end) : std::string();
}

icu::Locale localeFor(const UnitSources& sources) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(Units::displayLocale(sources), status);
    return U_SUCCESS(status) ? locale : icu::Locale::getEnglish();
}

icu::number::LocalizedNumberFormatter formatterFor(const UnitSources& sources) {
    return icu::number::NumberFormatter::withLocale(localeFor(sources));
}

icu::number::LocalizedNumberFormatter measurementFormatter(const UnitSources& sources,
                                                           const icu::MeasureUnit& unit,
                                                           int fractionDigits) {
    return formatterFor(sources)
        .unit(unit)
        .unitWidth(UNUM_UNIT_WIDTH_SHORT)
        .precision(icu::number::Precision::fixedFraction(fractionDigits));
}

// Empty only when ICU cannot format at all (out of memory).
std::string formatted(const icu::number::LocalizedNumberFormatter& formatter, double value) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text = formatter.formatDouble(value, status).toString(status);
    std::string utf8;
    if (U_SUCCESS(status)) {
        text.toUTF8String(utf8);
    }
    return utf8;
}

}  // namespace

std::optional<TemperatureChoice> temperatureChoiceFromRaw(std::string_view raw) {
    return enumFromRaw(choiceNames, raw);
}

std::string_view rawValue(TemperatureChoice choice) {
    return enumName(choiceNames, choice).raw;
}

std::string title(TemperatureChoice choice, const TextLookup& translate) {
    return translate(enumName(choiceNames, choice).title);
}

UnitSources unitSources(const SettingsStore& settings, const AppLanguage& language,
                        SharedSettings::EnvironmentLookup environment) {
    return {settings, [&language] { return language.code(); },
            [&language](std::string_view key) { return language.string(key); },
            std::move(environment)};
}

namespace Units {

TemperatureChoice temperatureChoice(const UnitSources& sources) {
    std::optional<std::string> raw = sources.settings.get().string("temperatureUnit");
    return raw ? temperatureChoiceFromRaw(*raw).value_or(TemperatureChoice::system)
               : TemperatureChoice::system;
}

TemperatureUnit temperatureUnit(const UnitSources& sources) {
    switch (temperatureChoice(sources)) {
        case TemperatureChoice::celsius: return TemperatureUnit::celsius;
        case TemperatureChoice::fahrenheit: return TemperatureUnit::fahrenheit;
        case TemperatureChoice::system: break;
    }
    return DisplayLocale::usesUSMeasurementSystem(sources.environment) ? TemperatureUnit::fahrenheit
                                                                       : TemperatureUnit::celsius;
}

std::string displayLocale(const UnitSources& sources) {
    return DisplayLocale::identifier(sources.languageCode(),
                                     DisplayLocale::userRegion(sources.environment));
}

std::string degrees(double celsius, const UnitSources& sources) {
    return degreesText(inUnit(celsius, temperatureUnit(sources)));
}

std::string temperature(double celsius, int fraction, const UnitSources& sources) {
    const TemperatureUnit unit = temperatureUnit(sources);
    // Without a usage set, ICU shows the unit it is given, so no locale converts it again.
    auto formatter =
        formatterFor(sources)
            .unit(unit == TemperatureUnit::fahrenheit ? icu::MeasureUnit::getFahrenheit()
                                                      : icu::MeasureUnit::getCelsius())
            .unitWidth(UNUM_UNIT_WIDTH_SHORT)
            .precision(icu::number::Precision::fixedFraction(std::max(0, fraction)));
    return formatted(formatter, inUnit(celsius, unit));
}

std::string rpm(double revolutionsPerMinute, const UnitSources& sources) {
    auto formatter = formatterFor(sources).precision(icu::number::Precision::integer());
    std::string text = sources.translate(rpmTemplate);
    std::size_t at = text.find(placeholder);
    // A translation that lost its placeholder would hide the number; the English one keeps it.
    if (at == std::string::npos) {
        text = rpmTemplate;
        at = text.find(placeholder);
    }
    return text.replace(at, placeholder.size(), formatted(formatter, revolutionsPerMinute));
}

std::string percent(double fraction, const UnitSources& sources) {
    auto formatter = formatterFor(sources)
                         .unit(icu::MeasureUnit::getPercent())
                         .scale(icu::number::Scale::powerOfTen(2))
                         .precision(icu::number::Precision::integer());
    return formatted(formatter, std::isfinite(fraction) ? fraction : 0.0);
}

std::string number(double value, int fractionDigits, const UnitSources& sources) {
    auto formatter = formatterFor(sources).precision(
        icu::number::Precision::fixedFraction(std::max(0, fractionDigits)));
    return formatted(formatter, value);
}

std::string volts(double value, const UnitSources& sources) {
    return formatted(measurementFormatter(sources, icu::MeasureUnit::getVolt(), 2), value);
}

std::string watts(double value, const UnitSources& sources) {
    return formatted(measurementFormatter(sources, icu::MeasureUnit::getWatt(), 1), value);
}

std::string duration(double seconds, const UnitSources& sources) {
    // Whole minutes, so that the text changes once a minute and not with every refresh.
    const double clamped = std::isfinite(seconds) && seconds > 0 ? seconds : 0.0;
    const auto minutes = static_cast<std::int64_t>(std::min(clamped / 60, 1e15));
    const std::int64_t days = minutes / (24 * 60);
    const std::int64_t hours = minutes / 60 % 24;
    UErrorCode status = U_ZERO_ERROR;
    icu::MeasureFormat format(localeFor(sources), UMEASFMT_WIDTH_SHORT, status);
    icu::Measure parts[3] = {
        {icu::Formattable(static_cast<double>(days)), icu::MeasureUnit::createDay(status), status},
        {icu::Formattable(static_cast<double>(hours)), icu::MeasureUnit::createHour(status),
         status},
        {icu::Formattable(static_cast<double>(minutes % 60)),
         icu::MeasureUnit::createMinute(status), status},
    };
    const int first = days > 0 ? 0 : hours > 0 ? 1 : 2;
    icu::UnicodeString text;
    icu::FieldPosition position;
    format.formatMeasures(parts + first, 3 - first, text, position, status);
    std::string utf8;
    if (U_SUCCESS(status)) {
        text.toUTF8String(utf8);
    }
    return utf8;
}

std::string degreesText(double degrees) {
    return wholeNumberText(degrees) + "°";
}

std::string percentText(double fraction) {
    // NaN counts as 0, like any value at or below 0.
    const double clamped = !(fraction > 0) ? 0.0 : std::min(fraction, 1.0);
    return wholeNumberText(clamped * 100) + "%";
}

}  // namespace Units

}  // namespace corvane
