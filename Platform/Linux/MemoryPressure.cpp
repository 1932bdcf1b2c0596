#include "Platform/Linux/MemoryPressure.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

namespace {

constexpr std::string_view someLabel = "some";
constexpr std::string_view fullLabel = "full";
constexpr std::string_view avg10Key = "avg10=";

// The avg10 share of one line, which the kernel prints first after the label. A share is a
// percentage of wall time; anything outside 0...100 is not one.
std::optional<double> avg10From(std::string_view fields) {
    const auto field = text::takeField(fields);
    if (!field.starts_with(avg10Key)) {
        return std::nullopt;
    }
    const auto share = parseNumber<double>(field.substr(avg10Key.size()), std::chars_format::fixed);
    if (!share || *share < 0.0 || *share > 100.0) {
        return std::nullopt;
    }
    return share;
}

}  // namespace

MemoryPressure parseMemoryPressure(std::string_view text) {
    MemoryPressure pressure;
    while (!text.empty()) {
        auto line = text::takeLine(text);
        const auto label = text::takeField(line);
        if (label == someLabel) {
            pressure.someAvg10 = avg10From(line);
        } else if (label == fullLabel) {
            pressure.fullAvg10 = avg10From(line);
        }
    }
    return pressure;
}

std::optional<std::int32_t> rawPressureLevelFrom(const MemoryPressure& pressure) {
    if (!pressure.someAvg10 || !pressure.fullAvg10) {
        return std::nullopt;
    }
    // "full" means no task made progress at all: the machine is thrashing. "some" at the same
    // share already shows as stutter on a desktop.
    if (*pressure.fullAvg10 >= pressureStallThresholdPercent) {
        return RawPressureLevel::critical;
    }
    if (*pressure.someAvg10 >= pressureStallThresholdPercent) {
        return RawPressureLevel::warning;
    }
    return RawPressureLevel::normal;
}

}  // namespace corvane
