#pragma once

#include <cstdint>
#include <optional>

#include "Platform/SystemStatistics.h"

namespace corvane {

/// The machine's CPU time split between two samples, as fractions of all ticks.
struct CPUFractions {
    /// User time including nice time, deliberately.
    double user = 0;
    double system = 0;

    double total() const { return user + system; }
};

/// The split between two whole-machine samples. The counters are 32-bit and subtracted with
/// wrapping arithmetic, so a counter that wrapped still gives its small true delta. Absent when
/// no tick elapsed (the caller then keeps its previous figures rather than showing 0).
std::optional<CPUFractions> cpuFractions(const HostCPULoad& previous, const HostCPULoad& current);

/// One logical CPU's time, reduced to what the busy fraction needs.
struct CoreTicks {
    std::uint64_t total = 0;
    std::uint64_t idle = 0;

    friend bool operator==(const CoreTicks&, const CoreTicks&) = default;
};

CoreTicks coreTicks(const ProcessorLoad& load);

/// The busy fraction of one CPU between two samples, in 0...1. 0 when no tick elapsed, when the
/// total went backwards by one tick, or when the idle delta exceeds the total delta.
double coreUsage(const CoreTicks& previous, const CoreTicks& current);

}  // namespace corvane
