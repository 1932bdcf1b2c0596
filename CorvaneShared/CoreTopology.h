#pragma once

#include <string>

namespace corvane {

/// One performance level of the processor: its name and how many logical CPUs it has.
/// Level 0 (the first tier of a list) is the fastest.
struct CoreTier {
    std::string name;
    int count = 0;

    friend bool operator==(const CoreTier&, const CoreTier&) = default;
};

}  // namespace corvane
