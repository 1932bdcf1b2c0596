#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/PerformanceLevels.h"

namespace corvane {

/// One performance level of the processor: its name and how many logical CPUs it has.
/// Level 0 (the first tier of a list) is the fastest.
struct CoreTier {
    std::string name;
    int count = 0;
    /// The kernel's numbers of its CPUs, ascending; empty when the platform does not say.
    std::vector<std::uint32_t> cpus = {};

    friend bool operator==(const CoreTier&, const CoreTier&) = default;
};

/// The tiers in level order: a level whose CPU count is unreadable (or beyond an int) is left
/// out, a level without a name (or with an empty one) is called "Level <i>". Empty when no level
/// count is given or it is below 1.
[[nodiscard]] std::vector<CoreTier> coreTiersFrom(const PerformanceLevels& levels);

/// The CPUs the tiers count; `activeProcessorCount` when there are no tiers.
[[nodiscard]] int totalCores(const std::vector<CoreTier>& tiers, int activeProcessorCount);

/// For each of `coreCount` per-core readings, whether its CPU is in the fastest tier.
/// `cpuNumbers` gives the kernel's CPU number of each reading; when it does not hold one per
/// reading, reading i is taken to be CPU i. A tier that does not list its CPUs is taken to be
/// the first `count` readings. All false without tiers: one kind of core has no fast ones.
[[nodiscard]] std::vector<bool> performanceCoreMask(const std::vector<CoreTier>& tiers,
                                                    const std::vector<std::uint32_t>& cpuNumbers,
                                                    std::size_t coreCount);

}  // namespace corvane
