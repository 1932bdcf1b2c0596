#pragma once

#include <string>
#include <string_view>

#include "CorvaneShared/SharedSettings.h"

/// The locale that user-visible numbers and measurements are formatted in: wording from the
/// interface language the user chose, digit grouping and decimal marks from the region of their
/// POSIX locale. Which POSIX category feeds which decision:
/// - the region comes from LC_NUMERIC, since marks and grouping are what that category governs;
/// - the measurement system (Fahrenheit or Celsius under "system") comes from LC_MEASUREMENT.
/// Each is read as the C library picks it: LC_ALL, else the category's own variable, else LANG,
/// with an empty value counting as unset. LANGUAGE and LC_MESSAGES play no part: the wording
/// follows the app's own language choice. Any thread.
namespace corvane::DisplayLocale {

using EnvironmentLookup = SharedSettings::EnvironmentLookup;

/// The POSIX locale name in force for `category` ("LC_NUMERIC", "LC_MEASUREMENT"), such as
/// "de_DE.UTF-8"; empty when none of the variables is set.
std::string posixLocaleName(const EnvironmentLookup& environment, const char* category);

/// The territory of the LC_NUMERIC locale ("DE" for de_DE.UTF-8, "419" for es_419); empty for
/// the C or POSIX locale and for a locale that names only a language.
std::string userRegion(const EnvironmentLookup& environment);

/// Whether the LC_MEASUREMENT locale uses the US measurement system, by the CLDR data for its
/// language and territory (a bare language gets its likely territory). False for the C or POSIX
/// locale and when no locale is set, as glibc's C locale is metric.
bool usesUSMeasurementSystem(const EnvironmentLookup& environment);

/// The display locale as a BCP 47 tag: `languageCode` (a tag such as "de", "pt-BR" or
/// "zh-Hans"; '_' is taken for '-') with its region replaced by `region` when that is a valid
/// region. "en", the development language, stands in for a code that is no valid tag.
std::string identifier(std::string_view languageCode, std::string_view region);

}  // namespace corvane::DisplayLocale
