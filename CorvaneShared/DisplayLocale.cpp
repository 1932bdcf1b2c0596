#include "CorvaneShared/DisplayLocale.h"

#include <algorithm>
#include <optional>

#include <unicode/localebuilder.h>
#include <unicode/locid.h>
#include <unicode/ulocdata.h>

namespace corvane::DisplayLocale {

namespace {

const char* nonEmpty(const char* value) {
    return value != nullptr && *value != '\0' ? value : nullptr;
}

// glibc names read language[_territory][.codeset][@modifier]. ICU would keep the codeset and
// read the modifier as a keyword, so both go before ICU sees the name; neither affects region
// or measurement system.
std::optional<icu::Locale> localeFromPOSIXName(std::string_view name) {
    name = name.substr(0, name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX") {
        return std::nullopt;
    }
    icu::Locale locale(std::string(name).c_str());
    if (locale.isBogus()) {
        return std::nullopt;
    }
    return locale;
}

std::optional<icu::Locale> buildLocale(const std::string& languageTag, std::string_view region) {
    UErrorCode status = U_ZERO_ERROR;
    icu::LocaleBuilder builder;
    builder.setLanguageTag(languageTag);
    if (!region.empty()) {
        builder.setRegion(region);
    }
    icu::Locale locale = builder.build(status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    return locale;
}

}  // namespace

std::string posixLocaleName(const EnvironmentLookup& environment, const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"}) {
        if (const char* value = nonEmpty(environment(variable))) {
            return value;
        }
    }
    return {};
}

std::string userRegion(const EnvironmentLookup& environment) {
    auto locale = localeFromPOSIXName(posixLocaleName(environment, "LC_NUMERIC"));
    return locale ? locale->getCountry() : std::string();
}

bool usesUSMeasurementSystem(const EnvironmentLookup& environment) {
    auto locale = localeFromPOSIXName(posixLocaleName(environment, "LC_MEASUREMENT"));
    if (!locale) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    UMeasurementSystem system = ulocdata_getMeasurementSystem(locale->getName(), &status);
    return U_SUCCESS(status) && system == UMS_US;
}

std::string identifier(std::string_view languageCode, std::string_view region) {
    std::string tag(languageCode);
    std::replace(tag.begin(), tag.end(), '_', '-');
    // An empty tag would build the root locale, which names no language at all.
    std::optional<icu::Locale> locale;
    if (!tag.empty()) {
        locale = buildLocale(tag, region);
        if (!locale) {
            locale = buildLocale(tag, {});
        }
    }
    if (!locale) {
        locale = buildLocale("en", region);
    }
    if (!locale) {
        return "en";
    }
    UErrorCode status = U_ZERO_ERROR;
    std::string result = locale->toLanguageTag<std::string>(status);
    return U_SUCCESS(status) ? result : "en";
}

}  // namespace corvane::DisplayLocale
