#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "Platform/GPUStatisticsSource.h"

namespace corvane {

/// The monitor's GPU figures: utilisations as fractions from 0 to 1, memory in bytes. Each is
/// absent when none of its candidate keys holds a usable number.
struct GPUStatistics {
    std::optional<double> gpuUsage;
    std::optional<double> gpuRendererUsage;
    std::optional<double> gpuTilerUsage;
    std::optional<std::uint64_t> gpuAllocatedMemory;
    std::optional<std::uint64_t> gpuInUseMemory;

    bool operator==(const GPUStatistics&) const = default;
};

/// Looks every figure up in `statistics` through its candidate keys, the first usable key
/// winning. Pure; any thread.
[[nodiscard]] GPUStatistics gpuStatisticsFrom(const StatisticsDictionary& statistics);

namespace gpu {

using CandidateKeys = std::span<const std::string_view>;

/// The value of the first key of `keys` present in `statistics` with a finite number; absent
/// when there is none. Keys holding anything else (strings, booleans, objects) are passed over.
[[nodiscard]] std::optional<double> number(const StatisticsDictionary& statistics,
                                           CandidateKeys keys);

/// number(keys) as whole bytes, truncated toward zero; absent when that value is negative or
/// beyond 64 bits, or no key matches. A negative first match does not fall through to later keys.
[[nodiscard]] std::optional<std::uint64_t> bytes(const StatisticsDictionary& statistics,
                                                 CandidateKeys keys);

/// A utilisation that a driver reports either as a fraction or as a percentage, as a fraction
/// within 0 … 1: above 1 it is taken as a percentage.
[[nodiscard]] double fractionFromPercent(double value);

}  // namespace gpu

}  // namespace corvane
