#include "CorvaneShared/MeterTexts.h"

#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <utility>

#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>

namespace corvane::MeterTexts {

namespace {

using icu::number::LocalizedNumberFormatter;

enum class Quantity { watts, bytes, revolutions };

// Below this a value keeps one decimal; at and above it the decimal would only add width.
constexpr double decimalsBelow = 10;
constexpr double byteStep = 1000;

struct FormatterKey {
    std::string localeTag;
    Quantity quantity;
    int byteUnit;
    int fractionDigits;

    // clang-tidy 14 takes the 0 a defaulted <=> compares with for a null pointer.
    auto operator<=>(const FormatterKey&) const = default;  // NOLINT(modernize-use-nullptr)
};

icu::MeasureUnit byteUnitAt(int index) {
    switch (index) {
        case 0: return icu::MeasureUnit::getKilobyte();
        case 1: return icu::MeasureUnit::getMegabyte();
        case 2: return icu::MeasureUnit::getGigabyte();
        case 3: return icu::MeasureUnit::getTerabyte();
        default: return icu::MeasureUnit::getPetabyte();
    }
}
constexpr int largestByteUnit = 4;

LocalizedNumberFormatter buildFormatter(const FormatterKey& key) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(key.localeTag, status);
    auto formatter = icu::number::NumberFormatter::withLocale(
                         U_SUCCESS(status) ? locale : icu::Locale::getEnglish())
                         .precision(icu::number::Precision::fixedFraction(key.fractionDigits))
                         // Halves away from zero, as every other meter text rounds.
                         .roundingMode(UNUM_ROUND_HALFUP);
    switch (key.quantity) {
        case Quantity::watts:
            return formatter.unit(icu::MeasureUnit::getWatt()).unitWidth(UNUM_UNIT_WIDTH_NARROW);
        case Quantity::bytes:
            return formatter.unit(byteUnitAt(key.byteUnit)).unitWidth(UNUM_UNIT_WIDTH_NARROW);
        case Quantity::revolutions: return formatter.grouping(UNUM_GROUPING_OFF);
    }
    return formatter;
}

std::optional<std::string> format(const FormatterKey& key, double value) {
    static std::mutex mutex;
    static std::map<FormatterKey, LocalizedNumberFormatter> formatters;
    std::string utf8;
    UErrorCode status = U_ZERO_ERROR;
    {
        std::lock_guard lock(mutex);
        auto found = formatters.find(key);
        if (found == formatters.end()) {
            found = formatters.emplace(key, buildFormatter(key)).first;
        }
        icu::UnicodeString text = found->second.formatDouble(value, status).toString(status);
        if (U_SUCCESS(status)) {
            text.toUTF8String(utf8);
        }
    }
    // Only an ICU failure (out of memory) gets here empty.
    if (utf8.empty()) {
        return std::nullopt;
    }
    return utf8;
}

bool isReadable(double value) {
    return std::isfinite(value) && value >= 0;
}

// One decimal below 10, none from there on, judged on the value as it will be shown, so that
// 9.96 becomes "10", not "10.0".
int fractionDigitsFor(double value) {
    return std::round(value * 10) / 10 < decimalsBelow ? 1 : 0;
}

}  // namespace

std::optional<std::string> watts(double watts, std::string_view localeTag) {
    if (!isReadable(watts)) {
        return std::nullopt;
    }
    return format({std::string(localeTag), Quantity::watts, 0, fractionDigitsFor(watts)}, watts);
}

std::optional<std::string> bytes(double bytes, std::string_view localeTag) {
    if (!isReadable(bytes)) {
        return std::nullopt;
    }
    int unit = 0;
    double value = bytes / byteStep;
    // Step up while the rounded figure would read 1000 or more of a unit.
    while (unit < largestByteUnit && std::round(value) >= byteStep) {
        value /= byteStep;
        ++unit;
    }
    // Nothing at all reads "0kB" rather than "0.0kB".
    const int digits = bytes == 0 ? 0 : fractionDigitsFor(value);
    return format({std::string(localeTag), Quantity::bytes, unit, digits}, value);
}

std::optional<std::string> revolutions(double revolutionsPerMinute, std::string_view localeTag) {
    if (!isReadable(revolutionsPerMinute)) {
        return std::nullopt;
    }
    return format({std::string(localeTag), Quantity::revolutions, 0, 0}, revolutionsPerMinute);
}

}  // namespace corvane::MeterTexts
