#pragma once

#include <nlohmann/json.hpp>

namespace corvane {

class SystemMonitor;

/// The monitor as one JSON object: every published field under its own name (absent values as
/// null, enumerations as their raw strings), the derived values, and the last refresh's plan.
nlohmann::ordered_json monitorSnapshot(const SystemMonitor& monitor);

}  // namespace corvane
