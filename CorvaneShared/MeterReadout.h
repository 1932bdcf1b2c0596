#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// What the CPU meter shows beside its graph. Raw values "off", "usage", "temperature", "power".
enum class CPUReadout { off, usage, temperature, power };
/// What the memory meter shows. Raw values "off", "usage", "pressure", "swap".
enum class MemoryReadout { off, usage, pressure, swap };
/// What the storage meter shows. Raw values "off", "usage", "free".
enum class StorageReadout { off, usage, free };
/// What the sensors meter shows. Raw values "off", "power", "hottest", "gpu", "fan".
enum class SensorsReadout { off, power, hottest, gpu, fan };

/// Exact, case-sensitive matches of the raw values; anything else is "not set" (absent).
std::optional<CPUReadout> cpuReadoutFromRaw(std::string_view raw);
std::optional<MemoryReadout> memoryReadoutFromRaw(std::string_view raw);
std::optional<StorageReadout> storageReadoutFromRaw(std::string_view raw);
std::optional<SensorsReadout> sensorsReadoutFromRaw(std::string_view raw);

}  // namespace corvane
