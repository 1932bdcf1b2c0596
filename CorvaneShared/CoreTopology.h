#pragma once

#include <string>
#include <vector>

#include "Platform/PerformanceLevels.h"

namespace corvane {

/// One performance level of the processor: its name and how many logical CPUs it has.
/// Level 0 (the first tier of a list) is the fastest.
struct CoreTier {
    std::string name;
    int count = 0;

    friend bool operator==(const CoreTier&, const CoreTier&) = default;
};

/// The tiers in level order: a level whose CPU count is unreadable (or beyond an int) is left
/// out, a level without a name (or with an empty one) is called "Level <i>". Empty when no level
/// count is given or it is below 1.
[[nodiscard]] std::vector<CoreTier> coreTiersFrom(const PerformanceLevels& levels);

/// The CPUs the tiers count; `activeProcessorCount` when there are no tiers.
[[nodiscard]] int totalCores(const std::vector<CoreTier>& tiers, int activeProcessorCount);

}  // namespace corvane
