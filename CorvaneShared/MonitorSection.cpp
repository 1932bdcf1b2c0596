#include "CorvaneShared/MonitorSection.h"

#include <array>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<MonitorSection>, 4> sectionNames{{
    {MonitorSection::cpu, "cpu", "CPU"},
    {MonitorSection::memory, "memory", "Memory"},
    {MonitorSection::storage, "storage", "Storage"},
    {MonitorSection::sensors, "sensors", "Sensors"},
}};

}  // namespace

std::string_view sectionKey(MonitorSection section) {
    return enumName(sectionNames, section).raw;
}

std::optional<MonitorSection> sectionFromKey(std::string_view key) {
    return enumFromRaw(sectionNames, key);
}

std::string_view itemVisibilityKey(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "showCPUItem";
        case MonitorSection::memory: return "showMemoryItem";
        case MonitorSection::storage: return "showStorageItem";
        case MonitorSection::sensors: return "showSensorsItem";
    }
    return {};
}

std::string sectionTitle(MonitorSection section, const TextLookup& translate) {
    return translate(enumName(sectionNames, section).title);
}

std::string_view panelTitle(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "CPU";
        case MonitorSection::memory: return "Memory";
        case MonitorSection::storage: return "SSD";
        case MonitorSection::sensors: return "Sensors";
    }
    return {};
}

std::string_view sectionIcon(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "cpu";
        case MonitorSection::memory: return "memorychip";
        case MonitorSection::storage: return "internaldrive";
        case MonitorSection::sensors: return "sensor";
    }
    return {};
}

}  // namespace corvane
