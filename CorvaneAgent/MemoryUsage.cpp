#include "CorvaneAgent/MemoryUsage.h"

#include <array>
#include <cmath>
#include <limits>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<MemoryPressureLevel>, 3> levelNames{{
    {MemoryPressureLevel::normal, "normal"},
    {MemoryPressureLevel::warning, "warning"},
    {MemoryPressureLevel::critical, "critical"},
}};

}  // namespace

std::string_view memoryPressureLevelRaw(MemoryPressureLevel level) {
    return enumName(levelNames, level).raw;
}

MemoryPressureLevel memoryPressureLevelFromRaw(std::optional<std::int32_t> raw) {
    if (raw == 2) {
        return MemoryPressureLevel::warning;
    }
    if (raw == 4) {
        return MemoryPressureLevel::critical;
    }
    return MemoryPressureLevel::normal;
}

std::uint64_t pagingRate(std::uint64_t previousBytes, std::uint64_t currentBytes,
                         double elapsedSeconds) {
    if (currentBytes < previousBytes) {
        return 0;
    }
    const double rate = static_cast<double>(currentBytes - previousBytes) / elapsedSeconds;
    // A double at or above 2^64 does not convert; such a rate is impossible, so hold it.
    constexpr double limit = 18446744073709551616.0;
    return rate >= limit ? std::numeric_limits<std::uint64_t>::max()
                         : static_cast<std::uint64_t>(std::trunc(rate));
}

std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t sum = a + b;
    return sum < a ? std::numeric_limits<std::uint64_t>::max() : sum;
}

}  // namespace corvane
