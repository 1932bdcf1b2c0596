#include "CorvaneAgent/GPUStatistics.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

// Drivers name the same figure differently, so each is looked for under every name in use,
// in this order.
constexpr std::string_view gpuUsageKeys[] = {"Device Utilization %", "Device Utilization",
                                             "GPU Activity(%)", "GPU Core Utilization"};
constexpr std::string_view rendererUsageKeys[] = {"Renderer Utilization %", "Renderer Utilization"};
constexpr std::string_view tilerUsageKeys[] = {"Tiler Utilization %", "Tiler Utilization"};
constexpr std::string_view allocatedMemoryKeys[] = {"Alloc system memory",
                                                    "Allocated System Memory", "gartUsedBytes"};
constexpr std::string_view inUseMemoryKeys[] = {"In use system memory", "In Use System Memory",
                                                "inUseSysMemoryBytes"};

// 2^64 as a double; every double below it converts to u64 without overflow.
constexpr double twoToThe64 = 18446744073709551616.0;

bool isUsableNumber(const StatisticsDictionary& value) {
    // A NaN or infinity would reach the screen as garbage or overflow the byte conversion.
    return value.is_number() && (!value.is_number_float() || std::isfinite(value.get<double>()));
}

const StatisticsDictionary* firstNumber(const StatisticsDictionary& statistics,
                                        gpu::CandidateKeys keys) {
    for (const auto key : keys) {
        const auto found = statistics.find(key);
        if (found != statistics.end() && isUsableNumber(*found)) {
            return &*found;
        }
    }
    return nullptr;
}

std::optional<double> percentFigure(const StatisticsDictionary& statistics,
                                    gpu::CandidateKeys keys) {
    const auto value = gpu::number(statistics, keys);
    if (!value) {
        return std::nullopt;
    }
    return gpu::fractionFromPercent(*value);
}

}  // namespace

namespace gpu {

std::optional<double> number(const StatisticsDictionary& statistics, CandidateKeys keys) {
    const auto* value = firstNumber(statistics, keys);
    if (value == nullptr) {
        return std::nullopt;
    }
    return value->get<double>();
}

std::optional<std::uint64_t> bytes(const StatisticsDictionary& statistics, CandidateKeys keys) {
    const auto* value = firstNumber(statistics, keys);
    if (value == nullptr) {
        return std::nullopt;
    }
    // Integers are taken as they are: through a double, a count above 2^53 would lose its low
    // bytes.
    if (value->is_number_unsigned()) {
        return value->get<std::uint64_t>();
    }
    if (value->is_number_integer()) {
        const auto signedValue = value->get<std::int64_t>();
        return signedValue < 0
                   ? std::nullopt
                   : std::optional<std::uint64_t>(static_cast<std::uint64_t>(signedValue));
    }
    const auto real = value->get<double>();
    if (real < 0.0 || real >= twoToThe64) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(real);
}

double fractionFromPercent(double value) {
    // Some drivers report 0.37, others 37: a value above 1 can only be a percentage. Exactly 1
    // stays a whole GPU, so a driver reporting percentages reads 1 % as 100 % here.
    if (value > 1.0) {
        value /= 100.0;
    }
    return std::clamp(value, 0.0, 1.0);
}

}  // namespace gpu

GPUStatistics gpuStatisticsFrom(const StatisticsDictionary& statistics) {
    return {
        .gpuUsage = percentFigure(statistics, gpuUsageKeys),
        .gpuRendererUsage = percentFigure(statistics, rendererUsageKeys),
        .gpuTilerUsage = percentFigure(statistics, tilerUsageKeys),
        .gpuAllocatedMemory = gpu::bytes(statistics, allocatedMemoryKeys),
        .gpuInUseMemory = gpu::bytes(statistics, inUseMemoryKeys),
    };
}

}  // namespace corvane
