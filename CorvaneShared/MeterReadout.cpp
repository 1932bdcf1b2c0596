#include "CorvaneShared/MeterReadout.h"

#include <array>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<CPUReadout>, 4> cpuNames{{
    {CPUReadout::off, "off", "Off"},
    {CPUReadout::usage, "usage", "Usage"},
    {CPUReadout::temperature, "temperature", "Temperature"},
    {CPUReadout::power, "power", "Power"},
}};

constexpr std::array<EnumName<MemoryReadout>, 4> memoryNames{{
    {MemoryReadout::off, "off", "Off"},
    {MemoryReadout::usage, "usage", "Usage"},
    {MemoryReadout::pressure, "pressure", "Pressure"},
    {MemoryReadout::swap, "swap", "Swap Used"},
}};

constexpr std::array<EnumName<StorageReadout>, 3> storageNames{{
    {StorageReadout::off, "off", "Off"},
    {StorageReadout::usage, "usage", "Usage"},
    {StorageReadout::free, "free", "Free Space"},
}};

constexpr std::array<EnumName<SensorsReadout>, 5> sensorsNames{{
    {SensorsReadout::off, "off", "Off"},
    {SensorsReadout::power, "power", "Power"},
    {SensorsReadout::hottest, "hottest", "Hottest Sensor"},
    {SensorsReadout::gpu, "gpu", "GPU Temperature"},
    {SensorsReadout::fan, "fan", "Fan Speed"},
}};

// The menu-bar layout's columns, by the widest text of each kind: percentages and watts need
// the most room, a compact temperature the least.
constexpr double percentOrPowerWidth = 33;
constexpr double byteCountWidth = 30;
constexpr double degreesWidth = 27;
constexpr double fanSpeedWidth = 29;

}  // namespace

std::optional<CPUReadout> cpuReadoutFromRaw(std::string_view raw) {
    return enumFromRaw(cpuNames, raw);
}
std::optional<MemoryReadout> memoryReadoutFromRaw(std::string_view raw) {
    return enumFromRaw(memoryNames, raw);
}
std::optional<StorageReadout> storageReadoutFromRaw(std::string_view raw) {
    return enumFromRaw(storageNames, raw);
}
std::optional<SensorsReadout> sensorsReadoutFromRaw(std::string_view raw) {
    return enumFromRaw(sensorsNames, raw);
}

std::string_view rawValue(CPUReadout readout) {
    return enumName(cpuNames, readout).raw;
}
std::string_view rawValue(MemoryReadout readout) {
    return enumName(memoryNames, readout).raw;
}
std::string_view rawValue(StorageReadout readout) {
    return enumName(storageNames, readout).raw;
}
std::string_view rawValue(SensorsReadout readout) {
    return enumName(sensorsNames, readout).raw;
}

std::string title(CPUReadout readout, const TextLookup& translate) {
    return translate(enumName(cpuNames, readout).title);
}
std::string title(MemoryReadout readout, const TextLookup& translate) {
    return translate(enumName(memoryNames, readout).title);
}
std::string title(StorageReadout readout, const TextLookup& translate) {
    return translate(enumName(storageNames, readout).title);
}
std::string title(SensorsReadout readout, const TextLookup& translate) {
    return translate(enumName(sensorsNames, readout).title);
}

double textWidth(CPUReadout readout) {
    switch (readout) {
        case CPUReadout::off: return 0;
        case CPUReadout::temperature: return degreesWidth;
        case CPUReadout::usage:
        case CPUReadout::power: return percentOrPowerWidth;
    }
    return 0;
}

double textWidth(MemoryReadout readout) {
    switch (readout) {
        case MemoryReadout::off: return 0;
        case MemoryReadout::swap: return byteCountWidth;
        case MemoryReadout::usage:
        case MemoryReadout::pressure: return percentOrPowerWidth;
    }
    return 0;
}

double textWidth(StorageReadout readout) {
    switch (readout) {
        case StorageReadout::off: return 0;
        case StorageReadout::free: return byteCountWidth;
        case StorageReadout::usage: return percentOrPowerWidth;
    }
    return 0;
}

double textWidth(SensorsReadout readout) {
    switch (readout) {
        case SensorsReadout::off: return 0;
        case SensorsReadout::hottest:
        case SensorsReadout::gpu: return degreesWidth;
        case SensorsReadout::fan: return fanSpeedWidth;
        case SensorsReadout::power: return percentOrPowerWidth;
    }
    return 0;
}

}  // namespace corvane
