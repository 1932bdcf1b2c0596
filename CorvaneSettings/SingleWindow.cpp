#include "CorvaneSettings/SingleWindow.h"

#include <cstdint>
#include <cstdio>

namespace corvane {

std::string settingsServiceName(std::string_view appIdentifier, std::string_view suite,
                                std::string_view defaultSuite) {
    std::string name = std::string(appIdentifier) + ".Settings";
    if (suite == defaultSuite) {
        return name;
    }
    // FNV-1a: stable across runs and builds, which std::hash does not promise.
    std::uint64_t hash = 14695981039346656037ULL;
    for (const char c : suite) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    }
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    // A bus-name element must not begin with a digit.
    return name + ".s" + digits;
}

}  // namespace corvane
