#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/TextLookup.h"

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

/// The raw settings value, which is also the readout's identifier.
std::string_view rawValue(CPUReadout readout);
std::string_view rawValue(MemoryReadout readout);
std::string_view rawValue(StorageReadout readout);
std::string_view rawValue(SensorsReadout readout);

/// The name shown in the settings screens, translated through `translate`.
std::string title(CPUReadout readout, const TextLookup& translate);
std::string title(MemoryReadout readout, const TextLookup& translate);
std::string title(StorageReadout readout, const TextLookup& translate);
std::string title(SensorsReadout readout, const TextLookup& translate);

/// Points reserved for the readout's text in the menu bar, without the gaps around it; 0 for
/// "off", which leaves the meter without a text column.
double textWidth(CPUReadout readout);
double textWidth(MemoryReadout readout);
double textWidth(StorageReadout readout);
double textWidth(SensorsReadout readout);

}  // namespace corvane
