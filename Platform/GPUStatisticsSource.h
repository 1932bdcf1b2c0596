#pragma once

#include "Platform/StatisticsDictionary.h"

namespace corvane {

/// Reads the graphics accelerators' performance statistics. Main thread.
class GPUStatisticsSource {
public:
    virtual ~GPUStatisticsSource() = default;
    /// Every accelerator's statistics merged into one object (the first accelerator's value
    /// stands when two report the same name); an empty object when no GPU can be read.
    virtual StatisticsDictionary performanceStatistics() = 0;
};

}  // namespace corvane
