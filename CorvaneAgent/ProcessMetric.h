#pragma once

#include <cstdint>
#include <string>

#include "Platform/ProcessSource.h"

namespace corvane {

/// One row of a "top processes" list.
struct ProcessMetric {
    std::int32_t pid = 0;
    std::string name;
    /// Percent of one core; above 100 for a process busy on several cores.
    double cpu = 0;
    /// Footprint in bytes.
    std::uint64_t memory = 0;
    /// Bytes per second.
    std::uint64_t diskRead = 0;
    /// Bytes per second.
    std::uint64_t diskWrite = 0;

    friend bool operator==(const ProcessMetric&, const ProcessMetric&) = default;
};

}  // namespace corvane
