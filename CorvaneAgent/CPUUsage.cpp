#include "CorvaneAgent/CPUUsage.h"

#include <algorithm>
#include <limits>

namespace corvane {

std::optional<CPUFractions> cpuFractions(const HostCPULoad& previous, const HostCPULoad& current) {
    // Unsigned 32-bit subtraction wraps, which is exactly right for counters that wrapped.
    const std::uint32_t user = current.user - previous.user;
    const std::uint32_t system = current.system - previous.system;
    const std::uint32_t idle = current.idle - previous.idle;
    const std::uint32_t nice = current.nice - previous.nice;
    const std::uint64_t total = std::uint64_t{user} + system + idle + nice;
    if (total == 0) {
        return std::nullopt;
    }
    const auto ticks = static_cast<double>(total);
    return CPUFractions{.user = static_cast<double>(std::uint64_t{user} + nice) / ticks,
                        .system = static_cast<double>(system) / ticks};
}

CoreTicks coreTicks(const ProcessorLoad& load) {
    return {.total = load.user + load.system + load.idle + load.nice, .idle = load.idle};
}

double coreUsage(const CoreTicks& previous, const CoreTicks& current) {
    const std::uint64_t total = current.total - previous.total;
    const std::uint64_t idle = current.idle - previous.idle;
    if (total == 0 || total == std::numeric_limits<std::uint64_t>::max() || total < idle) {
        return 0.0;
    }
    const double usage = 1.0 - static_cast<double>(idle) / static_cast<double>(total);
    return std::clamp(usage, 0.0, 1.0);
}

}  // namespace corvane
