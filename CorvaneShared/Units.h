#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/TextLookup.h"

namespace corvane {

class AppLanguage;

/// The user's temperature unit choice ("temperatureUnit"). Raw values "system", "celsius",
/// "fahrenheit".
enum class TemperatureChoice { system, celsius, fahrenheit };
/// The unit temperatures are shown in.
enum class TemperatureUnit { celsius, fahrenheit };

/// Exact, case-sensitive match of the raw values; absent otherwise.
std::optional<TemperatureChoice> temperatureChoiceFromRaw(std::string_view raw);
/// The raw settings value, which is also the choice's identifier.
std::string_view rawValue(TemperatureChoice choice);
/// The name shown in the settings screens, translated through `translate`.
std::string title(TemperatureChoice choice, const TextLookup& translate);

/// Where the unit texts take their inputs from. Each call reads all of them afresh, so a
/// changed setting or language shows in the next text.
struct UnitSources {
    /// The shared settings ("temperatureUnit").
    std::reference_wrapper<const SettingsStore> settings;
    /// The interface language in force (the app-language code, such as "de").
    std::function<std::string()> languageCode;
    /// The app-language strings, for the "%@ RPM" template.
    TextLookup translate;
    /// The process environment, for the user's POSIX locale (see DisplayLocale).
    SharedSettings::EnvironmentLookup environment;
};

/// The sources of a process whose interface language is `language`: its code and its strings.
/// `settings` and `language` must outlive the result; main thread only, as AppLanguage is.
UnitSources unitSources(const SettingsStore& settings, const AppLanguage& language,
                        SharedSettings::EnvironmentLookup environment);

/// Display texts for temperatures, fan speeds and percentages. Any thread, provided the
/// sources may be called from it.
namespace Units {

/// "temperatureUnit" matched exactly; anything else, or no value, is `system`.
TemperatureChoice temperatureChoice(const UnitSources& sources);
/// The chosen unit; under `system`, Fahrenheit exactly when the user's measurement locale uses
/// the US system.
TemperatureUnit temperatureUnit(const UnitSources& sources);
/// The display locale's BCP 47 tag: the language in force with the user's numeric region.
std::string displayLocale(const UnitSources& sources);

/// `celsius` in the chosen unit as a whole number (halves away from zero) followed by "°", with
/// no unit letter and no space: the compact menu-bar form ("52°").
std::string degrees(double celsius, const UnitSources& sources);
/// `celsius` in the chosen unit with exactly `fraction` fractional digits (0 when negative) and
/// the abbreviated unit, in the display locale ("52,4 °C" in German).
std::string temperature(double celsius, int fraction, const UnitSources& sources);
/// Revolutions per minute as a whole number in the display locale, put into the translated
/// "%@ RPM" template.
std::string rpm(double revolutionsPerMinute, const UnitSources& sources);

/// `fraction` as a whole percentage in the display locale's percent style ("63%", "63 %" in
/// German); a value that is not a number reads as 0.
std::string percent(double fraction, const UnitSources& sources);
/// `value` with exactly `fractionDigits` fractional digits in the display locale, grouped.
std::string number(double value, int fractionDigits, const UnitSources& sources);
/// Volts with two fractional digits and the abbreviated unit ("12.45 V").
std::string volts(double value, const UnitSources& sources);
/// Watts with one fractional digit and the abbreviated unit ("7.3 W").
std::string watts(double value, const UnitSources& sources);
/// A span of `seconds` in whole days, hours and minutes with abbreviated units, leaving out
/// leading units that are zero ("2 days, 3 hr, 5 min"); negative or non-finite spans read as 0.
std::string duration(double seconds, const UnitSources& sources);

/// The compact form of `degrees` for a value already in its unit.
std::string degreesText(double degrees);
/// The meters' percentage: `fraction` clamped to 0...1, as a whole percent (halves away from
/// zero) followed by "%" ("46%" for 0.456).
std::string percentText(double fraction);

}  // namespace Units

}  // namespace corvane
