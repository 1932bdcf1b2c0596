#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

/// Capacity of the start-up volume. Bytes; a missing figure is 0, a missing name is empty.
struct StorageReading {
    std::int64_t total = 0;
    std::int64_t available = 0;
    std::string name;
};

/// Reads the start-up volume. Called on a background task, one call at a time.
class StorageSource {
public:
    virtual ~StorageSource() = default;
    /// Absent when the volume cannot be asked at all.
    virtual std::optional<StorageReading> readStorage() = 0;
};

}  // namespace corvane
