#include "CorvaneShared/MeterAccent.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "Foundation/EnumNames.h"
#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

constexpr std::string_view customPrefix = "custom:srgb:";
constexpr double quantum = 10000;  // four decimals, as the raw value keeps them

constexpr std::array<EnumName<NamedAccent>, 8> accentNames{{
    {NamedAccent::signal, "signal", "Signal"},
    {NamedAccent::blue, "blue", "Blue"},
    {NamedAccent::indigo, "indigo", "Indigo"},
    {NamedAccent::purple, "purple", "Purple"},
    {NamedAccent::teal, "teal", "Teal"},
    {NamedAccent::pine, "pine", "Pine"},
    {NamedAccent::amber, "amber", "Amber"},
    {NamedAccent::graphite, "graphite", "Graphite"},
}};

SRGBColor namedColor(NamedAccent name) {
    switch (name) {
        case NamedAccent::signal: return {0.27, 0.72, 0.60};
        case NamedAccent::blue: return {0.28, 0.56, 0.92};
        case NamedAccent::indigo: return {0.42, 0.42, 0.95};
        case NamedAccent::purple: return {0.58, 0.46, 0.92};
        case NamedAccent::teal: return {0.22, 0.66, 0.78};
        case NamedAccent::pine: return {0.14, 0.47, 0.40};
        case NamedAccent::amber: return {0.90, 0.68, 0.26};
        case NamedAccent::graphite: return {0.64, 0.66, 0.70};
    }
    return {};
}

// At or below 0 gives +0, so a stored "-0.0000" never appears; a NaN from a colour picker
// gives 0 as well rather than a component outside 0...1.
double clampComponent(double value) {
    if (!(value > 0)) {
        return 0;
    }
    return value > 1 ? 1 : value;
}

// A decimal number as a settings value may hold it; like strtod, one leading '+' is taken.
// NaN and infinity convert here and are refused by the caller, so they count as numbers.
std::optional<double> parseComponent(std::string_view text) {
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    return parseNumber<double>(text, std::chars_format::general, NonFiniteNumbers::accepted);
}

std::vector<double> parseComponents(std::string_view list) {
    std::vector<double> numbers;
    while (true) {
        const std::size_t comma = list.find(',');
        if (auto number = parseComponent(list.substr(0, comma))) {
            numbers.push_back(*number);
        }
        if (comma == std::string_view::npos) {
            return numbers;
        }
        list.remove_prefix(comma + 1);
    }
}

void appendFourDecimals(std::string& text, double value) {
    char buffer[32];
    auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 4);
    if (error == std::errc{}) {
        text.append(buffer, end);
    }
}

}  // namespace

MeterAccent MeterAccent::custom(double red, double green, double blue) {
    auto quantise = [](double value) {
        return std::round(clampComponent(value) * quantum) / quantum;
    };
    return MeterAccent(SRGBColor{quantise(red), quantise(green), quantise(blue)});
}

std::optional<MeterAccent> MeterAccent::fromRawValue(std::string_view raw) {
    if (auto name = enumFromRaw(accentNames, raw)) {
        return MeterAccent(*name);
    }
    if (!raw.starts_with(customPrefix)) {
        return std::nullopt;
    }
    const std::vector<double> numbers = parseComponents(raw.substr(customPrefix.size()));
    if (numbers.size() != 3 ||
        !std::all_of(numbers.begin(), numbers.end(), [](double n) { return std::isfinite(n); })) {
        return std::nullopt;
    }
    // Quantised as custom() does: a hand-edited value with more decimals must read as the accent
    // it will be written back as, or the two would compare unequal though they print alike.
    return custom(numbers[0], numbers[1], numbers[2]);
}

std::string MeterAccent::rawValue() const {
    if (auto named = name()) {
        return std::string(enumName(accentNames, *named).raw);
    }
    const SRGBColor& components = std::get<SRGBColor>(accent);
    std::string text(customPrefix);
    appendFourDecimals(text, components.red);
    text += ',';
    appendFourDecimals(text, components.green);
    text += ',';
    appendFourDecimals(text, components.blue);
    return text;
}

std::optional<NamedAccent> MeterAccent::name() const {
    if (const NamedAccent* named = std::get_if<NamedAccent>(&accent)) {
        return *named;
    }
    return std::nullopt;
}

SRGBColor MeterAccent::color() const {
    if (auto named = name()) {
        return namedColor(*named);
    }
    return std::get<SRGBColor>(accent);
}

std::string MeterAccent::title(const TextLookup& translate) const {
    if (auto named = name()) {
        return translate(enumName(accentNames, *named).title);
    }
    return translate("Custom");
}

std::string_view accentKey(MeterAccentSlot slot) {
    switch (slot) {
        case MeterAccentSlot::cpu: return "cpuAccent";
        case MeterAccentSlot::cpuFastCore: return "cpuFastCoreAccent";
        case MeterAccentSlot::memory: return "memoryAccent";
        case MeterAccentSlot::storage: return "storageAccent";
    }
    return {};
}

}  // namespace corvane
