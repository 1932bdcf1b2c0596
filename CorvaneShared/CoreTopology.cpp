#include "CorvaneShared/CoreTopology.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <utility>

namespace corvane {

std::vector<CoreTier> coreTiersFrom(const PerformanceLevels& levels) {
    std::vector<CoreTier> tiers;
    if (!levels.count || *levels.count < 1) {
        return tiers;
    }
    // The count comes from the source and may be anything; only the levels it describes exist.
    const auto described = static_cast<std::int64_t>(levels.levels.size());
    const auto last = std::min(*levels.count, described);
    for (std::int64_t i = 0; i < last; ++i) {
        const auto& level = levels.levels[static_cast<std::size_t>(i)];
        if (!level.logicalCPUs || *level.logicalCPUs < std::numeric_limits<int>::min() ||
            *level.logicalCPUs > std::numeric_limits<int>::max()) {
            continue;
        }
        auto name = level.name && !level.name->empty() ? *level.name : "Level " + std::to_string(i);
        tiers.push_back({std::move(name), static_cast<int>(*level.logicalCPUs), level.cpus});
    }
    return tiers;
}

int totalCores(const std::vector<CoreTier>& tiers, int activeProcessorCount) {
    if (tiers.empty()) {
        return activeProcessorCount;
    }
    return std::accumulate(tiers.begin(), tiers.end(), 0,
                           [](int sum, const CoreTier& tier) { return sum + tier.count; });
}

std::vector<bool> performanceCoreMask(const std::vector<CoreTier>& tiers,
                                      const std::vector<std::uint32_t>& cpuNumbers,
                                      std::size_t coreCount) {
    std::vector<bool> mask(coreCount, false);
    if (tiers.empty()) {
        return mask;
    }
    const CoreTier& fastest = tiers.front();
    if (fastest.cpus.empty()) {
        std::fill_n(mask.begin(), std::min<std::size_t>(mask.size(), std::max(0, fastest.count)),
                    true);
        return mask;
    }
    const bool numbered = cpuNumbers.size() == coreCount;
    for (std::size_t i = 0; i < coreCount; ++i) {
        const auto cpu = numbered ? cpuNumbers[i] : static_cast<std::uint32_t>(i);
        mask[i] = std::binary_search(fastest.cpus.begin(), fastest.cpus.end(), cpu);
    }
    return mask;
}

}  // namespace corvane
